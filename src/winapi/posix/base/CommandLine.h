// Command lines: the program that one names, and its arguments.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

struct Program {
  std::string nativePath;       // absolute; empty when there is none
  std::string_view arguments;   // what follows it in the command line
  DWORD error = ERROR_SUCCESS;  // why there is none
};

// The program that starting this command line runs: the first token when it is quoted, else the
// shortest text before a blank that names a file, with ".exe" put to a name without an extension.
// A relative name is resolved against the current directory.
Program findProgram(std::string_view commandLine);

// The arguments after the program's name, by the rules of the Microsoft C runtime
// (learn.microsoft.com/cpp/c-language/parsing-c-command-line-arguments).
std::vector<std::string> splitArguments(std::string_view arguments);

}  // namespace tolvanix::winapi
