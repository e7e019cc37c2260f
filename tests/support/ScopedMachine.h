// The computer that the platform layer presents inside a test's process.
#pragma once

#include <filesystem>
#include <memory>

#include "winapi/posix/Machine.h"

namespace tolvanix::test {

// Presents the computer that a registry export or a sysfs tree describes, as TOLVANIX_MACHINE
// would, until the end of the scope. Device sets are closed before it.
class ScopedMachine {
 public:
  explicit ScopedMachine(const std::filesystem::path& machine);
  ScopedMachine(const ScopedMachine&) = delete;
  ScopedMachine& operator=(const ScopedMachine&) = delete;
  ~ScopedMachine();

 private:
  std::unique_ptr<winapi::Machine> before;
};

}  // namespace tolvanix::test
