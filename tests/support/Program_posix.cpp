#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <future>
#include <optional>
#include <stdexcept>

#include "support/Files.h"
#include "support/Program.h"
#include "winapi/posix/base/FileDescriptor.h"

namespace tolvanix::test {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& additions) {
  std::vector<std::string> result;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string name(*variable, std::strcspn(*variable, "="));
    if (!additions.contains(name)) result.emplace_back(*variable);
  }
  for (const auto& [name, value] : additions) result.emplace_back(name).append("=").append(value);
  return result;
}

// Throws after the time limit, when the program has been ended.
int waitForExitCode(pid_t process, const ProgramCall& call) {
  auto end = std::async(std::launch::async, [process] {
    int status = 0;
    waitpid(process, &status, 0);
    return status;
  });
  if (end.wait_for(call.timeLimit) != std::future_status::ready) {
    kill(process, SIGKILL);
    throw std::runtime_error(call.program.string() + " is not done in time");
  }
  const int status = end.get();
  if (WIFSIGNALED(status)) {
    throw std::runtime_error(call.program.string() + " was ended by " +
                             strsignal(WTERMSIG(status)));
  }
  return WEXITSTATUS(status);
}

std::string readToEnd(int descriptor) {
  std::string text;
  std::array<char, 65536> block;
  for (;;) {
    const ssize_t count = read(descriptor, block.data(), block.size());
    if (count <= 0) return text;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
}

pid_t start(const ProgramCall& call, int output, const std::filesystem::path& errors) {
  std::vector<std::string> arguments = call.arguments;
  arguments.insert(arguments.begin(), call.program.string());
  std::vector<std::string> environment = environmentWith(call.environment);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, call.currentDirectory.c_str());
  pid_t process = -1;
  const int failure = posix_spawn(&process, call.program.c_str(), &actions, nullptr,
                                  pointers(arguments).data(), pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    throw std::runtime_error("cannot start " + call.program.string() + ": " + strerror(failure));
  }
  return process;
}

}  // namespace

ProgramResult runProgram(const ProgramCall& call) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  const winapi::FileDescriptor readEnd(ends[0]);
  std::optional<winapi::FileDescriptor> writeEnd(ends[1]);

  // Standard error is left to a process that outlives the program; a file waits for none.
  const TempDir captured;
  const pid_t process = start(call, writeEnd->get(), captured / "errors");
  writeEnd.reset();
  auto output = std::async(std::launch::async, readToEnd, readEnd.get());
  const int exitCode = waitForExitCode(process, call);
  return {exitCode, output.get(), readText(captured / "errors")};
}

}  // namespace tolvanix::test
