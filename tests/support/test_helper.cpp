// A helper program for tests. What it does stands in a text file beside it, of its own name but
// with ".txt"; the steps, one a line, in order:
//   record FILE   append the arguments, one a line each, and the working folder, to that file
//   print N       write N bytes to standard output
//   sleep MS
//   linger MS     start a copy that keeps standard output open for that long, and go on
//   raise N       send itself the signal
//   exit N
// Files are those beside the program. Without such a text it ends with 0 at once.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "winapi/winapi.h"

namespace {

namespace fs = std::filesystem;

void sleepFor(const std::string& milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(milliseconds)));
}

void startLingeringCopy(const std::string& program, const std::string& milliseconds) {
  std::string commandLine = '"' + program;
  commandLine += "\" linger " + milliseconds;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                     &startup, &process) == FALSE) {
    std::abort();
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::string(argv[1]) == "linger") {
    sleepFor(argv[2]);
    return 0;
  }
  fs::path stepsFile = argv[0];
  stepsFile.replace_extension(".txt");
  const fs::path folder = stepsFile.parent_path();
  std::ifstream steps(stepsFile);
  std::string line;
  while (std::getline(steps, line)) {
    std::istringstream words(line);
    std::string step;
    std::string value;
    words >> step >> value;
    if (step == "record") {
      std::ofstream out(folder / value, std::ios::app | std::ios::binary);
      for (int i = 1; i < argc; ++i) out << argv[i] << '\n';
      out << fs::current_path().string() << '\n';
    } else if (step == "print") {
      std::fputs(std::string(std::stoul(value), 'x').c_str(), stdout);
      std::fflush(stdout);
    } else if (step == "sleep") {
      sleepFor(value);
    } else if (step == "linger") {
      startLingeringCopy(argv[0], value);
    } else if (step == "raise") {
      std::raise(std::stoi(value));
    } else if (step == "exit") {
      return static_cast<int>(std::stol(value));
    } else {
      return 99;
    }
  }
  return 0;
}
