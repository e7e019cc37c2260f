#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <future>
#include <stdexcept>

#include "support/Files.h"
#include "support/Program.h"

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

}  // namespace

ProgramResult runProgram(const ProgramCall& call) {
  // Files take the output: pipes could fill, or stay open in a process that outlives the program.
  const TempDir captured;
  const auto output = captured / "output";
  const auto errors = captured / "errors";
  const auto& outputTarget = call.outputDevice.empty() ? output : call.outputDevice;

  std::vector<std::string> arguments = call.arguments;
  arguments.insert(arguments.begin(), call.program.string());
  std::vector<std::string> environment = environmentWith(call.environment);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputTarget.c_str(), kCreate, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), kCreate, 0600);
  posix_spawn_file_actions_addchdir_np(&actions, call.currentDirectory.c_str());
  pid_t process = -1;
  const int failure = posix_spawn(&process, call.program.c_str(), &actions, nullptr,
                                  pointers(arguments).data(), pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    throw std::runtime_error("cannot start " + call.program.string() + ": " + strerror(failure));
  }

  const int exitCode = waitForExitCode(process, call);
  return {exitCode, call.outputDevice.empty() ? readText(output) : "", readText(errors)};
}

}  // namespace tolvanix::test
