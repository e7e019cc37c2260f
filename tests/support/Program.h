// Runs a program as a user would, and gives back what it left.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tolvanix::test {

// Each arrives unchanged, whatever it contains.
using Arguments = std::vector<std::string>;

struct ProgramResult {
  int exitCode;
  std::string output;  // standard output and error, with "\n" for the platform's line ends
  std::string errors;
};

// Waits for the program's end. One that cannot be started, that is ended by a signal, that is not
// done in half a minute, or that leaves a process with its standard output, fails the test (an
// exception, or the test's own time limit).
ProgramResult runProgram(const std::filesystem::path& program, const Arguments& arguments);

}  // namespace tolvanix::test
