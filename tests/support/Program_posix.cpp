#include "support/Patterns.h"
#include "support/Program.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <stdexcept>

#include "support/Files.h"

namespace tolvanix::test {

namespace {

std::string quoted(const std::string& text) {
  return '\'' + replaced(text, "'", R"('\'')") + "' ";
}

}  // namespace

ProgramResult runProgram(const std::filesystem::path& program, const Arguments& arguments) {
  // Standard error is left to a process that outlives the program; a file waits for none.
  const TempDir captured;
  std::string command = "exec timeout --foreground -s KILL 30 " + quoted(program.string());
  for (const std::string& argument : arguments) command += quoted(argument);
  command += "</dev/null 2>" + quoted((captured / "errors").string());
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot make a pipe");
  std::string output;
  std::array<char, 65536> block;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), pipe)) {
    output.append(block.data(), count);
  }
  const int status = pclose(pipe);
  const int exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  // Beyond the exit codes of programs: it was not started, it was not done in time, or a signal.
  if (exitCode < 0 || exitCode > 123) {
    throw std::runtime_error(command + " ends with " + std::to_string(status));
  }
  return {exitCode, output, readText(captured / "errors")};
}

}  // namespace tolvanix::test
