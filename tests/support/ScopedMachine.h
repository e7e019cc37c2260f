// The computer that a test's own process sees.
#pragma once

#include <filesystem>
#include <memory>

namespace tolvanix::test {

// Until the end of the scope, the computer of a registry export (under Wine as `Computer` says) or,
// off Windows, of a sysfs tree. Device sets are closed before it.
class ScopedMachine {
 public:
  explicit ScopedMachine(const std::filesystem::path& machine);
  ScopedMachine(const ScopedMachine&) = delete;
  ScopedMachine& operator=(const ScopedMachine&) = delete;
  ~ScopedMachine();

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace tolvanix::test
