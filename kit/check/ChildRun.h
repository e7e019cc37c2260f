// Runs another program and reads what it says.
#pragma once

#include <optional>
#include <string>

#include "winapi/winapi.h"

namespace tolvanix::kit {

struct ChildRun {
  DWORD exitCode;
  std::string output;  // standard output and standard error
};

// Waits for the program's end. The first word of the command line is the program's path, in double
// quotes. None when it cannot be run.
std::optional<ChildRun> runChild(const std::string& commandLine);

}  // namespace tolvanix::kit
