// A helper program for tests. What it does is in a text file beside it, of its own name but
// with ".txt"; the steps, one a line, in order:
//   record FILE   append the arguments, one a line each, and the working folder, to that file
//   print N       write N bytes to standard output
//   complain N    the same to standard error
//   wait FILE     until the test gives that file, which is taken away (releaseHelper)
//   linger FILE   start a copy that keeps standard output open until it is given that file, and go
//                 on
//   raise N       send itself the signal
//   remove FILE   which may be a path from the program's folder
//   exit N
// Files are those beside the program. Without such a text it ends with 0 at once.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>

#include "winapi/winapi.h"

namespace {

namespace fs = std::filesystem;

// False when no test gives the file in time.
bool waitFor(const fs::path& file) {
  for (int tries = 0; tries < 2000; ++tries) {
    std::error_code notYet;
    if (fs::remove(file, notYet)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// The copy has no standard error, which may be a file that the test removes.
void startLingeringCopy(const std::string& program, const std::string& file) {
  std::string commandLine = '"' + program;
  commandLine += "\" linger " + file;
  SetHandleInformation(GetStdHandle(STD_ERROR_HANDLE), HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                     &startup, &process) == FALSE) {
    std::abort();
  }
}

}  // namespace

int main(int argc, char** argv) try {
  fs::path stepsFile = argv[0];
  stepsFile.replace_extension(".txt");
  const fs::path folder = stepsFile.parent_path();
  if (argc > 2 && std::string("linger") == argv[1]) return waitFor(folder / argv[2]) ? 0 : 97;
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
    } else if (step == "print" || step == "complain") {
      std::FILE* const stream = step == "print" ? stdout : stderr;
      std::fputs(std::string(std::stoul(value), 'x').c_str(), stream);
      if (std::fflush(stream) != 0) return 98;
    } else if (step == "wait") {
      if (!waitFor(folder / value)) return 97;
    } else if (step == "linger") {
      startLingeringCopy(argv[0], value);
    } else if (step == "raise") {
      std::raise(std::stoi(value));
    } else if (step == "remove") {
      fs::remove(folder / value);
    } else if (step == "exit") {
      return static_cast<int>(std::stol(value));
    } else {
      return 99;
    }
  }
  return 0;
} catch (const std::exception&) {
  return 99;
}
