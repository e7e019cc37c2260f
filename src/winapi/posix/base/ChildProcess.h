// A program that this one has started.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "winapi/posix/base/KernelObjects.h"

namespace tolvanix::winapi {

class ChildProcess : public KernelObject {
 public:
  // Made before its child is: what cannot be made for lack of memory could not be waited for.
  ChildProcess() = default;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  // Also takes the end of the child off the system's books.
  ~ChildProcess() override { hasEnded(); }

  // Starts the program, once, in that directory, with the current standard handles for its streams
  // and no other file of ours. 0 or the errno. Unlike a shell, does not take a text for a script.
  int start(const std::string& program, std::vector<std::string> arguments,
            const std::string& nativeDirectory);

  // Good once it was started.
  pid_t processId() const { return pid; }

  // Whether the child has ended by then; for ever without a time. The last look is after the time.
  bool waitUntil(std::optional<std::chrono::steady_clock::time_point> end);

  // While the child runs, 259 (STILL_ACTIVE); 128 plus the number of a signal that ended it. None
  // when somebody else's wait, of a library perhaps, took it.
  std::optional<DWORD> currentExitCode();

 private:
  bool hasEnded();
  bool exists() const;

  pid_t pid = 0;  // no child yet
  // Of the process; without one (kernels before 5.3, some sandboxes) the wait looks now and then.
  std::optional<FileDescriptor> descriptor;
  bool ended = false;
  std::optional<DWORD> exitCode;
};

}  // namespace tolvanix::winapi
