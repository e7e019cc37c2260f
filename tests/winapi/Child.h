// A child process of a test.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "winapi/Owner.h"

namespace tolvanix::test {

// Without a process, and with the last error, when it does not start.
struct Child {
  explicit Child(std::string commandLine, const char* directory = nullptr) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, directory,
                   &startup, &started);
    process.reset(started.hProcess);
    thread.reset(started.hThread);
  }

  KernelObjectOwner process;
  KernelObjectOwner thread;
};

// The exit code; none, with the last error, when it does not start.
inline std::optional<DWORD> run(const std::string& commandLine, const char* directory = nullptr) {
  const Child child(commandLine, directory);
  if (!child.process) return std::nullopt;
  DWORD exitCode = 0;
  EXPECT_EQ(WaitForSingleObject(child.process.get(), 20000), WAIT_OBJECT_0);
  EXPECT_TRUE(GetExitCodeProcess(child.process.get(), &exitCode));
  return exitCode;
}

}  // namespace tolvanix::test
