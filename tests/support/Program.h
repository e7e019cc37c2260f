// Runs a program as a user would, and gives back what it left.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tolvanix::test {

struct ProgramCall {
  std::filesystem::path program;
  std::vector<std::string> arguments;  // each arrives as it stands, whatever it holds
  std::filesystem::path currentDirectory = std::filesystem::current_path();
  std::map<std::string, std::string> environment{};  // beside what the test itself has
  std::chrono::seconds timeLimit{30};
};

struct ProgramResult {
  int exitCode;
  std::string output;  // standard output and error, with "\n" for the platform's line ends
  std::string errors;
};

// Reads the program's standard output from a pipe until nobody can write there any more, and waits
// for the program's end. One that cannot be started, that is ended by a signal or that is not done
// in time fails the test (an exception).
ProgramResult runProgram(const ProgramCall& call);

}  // namespace tolvanix::test
