#include "winapi/posix/base/ChildProcess.h"

#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <thread>
#include <utility>

namespace tolvanix::winapi {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr DWORD kStillActive = 259;
constexpr DWORD kSignalExitBase = 128;

// How a child is to start: with the current standard handles for its streams and no other file of
// ours, in a directory, and with no trace of this process's treatment of signals.
class SpawnSetup {
 public:
  explicit SpawnSetup(const std::string& nativeDirectory) {
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    copies.reserve(kStandardStreams);
    for (int fd = 0; fd < kStandardStreams; ++fd) setStream(fd);
    require(posix_spawn_file_actions_addclosefrom_np(&actions, kStandardStreams));
    require(posix_spawn_file_actions_addchdir_np(&actions, nativeDirectory.c_str()));
    sigset_t signals{};
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;
  ~SpawnSetup() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }

  // 0 or the errno. Unlike a shell, does not take a text for a script.
  int start(const std::string& program, std::vector<std::string> arguments, pid_t& pid) const {
    if (setupError != 0) return setupError;
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    return posix_spawn(&pid, program.c_str(), &actions, &attributes, argv.data(), environ);
  }

 private:
  // By way of a copy above the standard streams, so that no two of them get into each other's way.
  void setStream(int fd) {
    const auto index = static_cast<std::size_t>(fd);
    const auto* const stream = handleObject<Stream>(standardHandles()[index]);
    if (stream != nullptr && stream->isInherited()) {
      copies.push_back(duplicateAboveStandard(stream->get()));
      require(posix_spawn_file_actions_adddup2(&actions, copies.back().get(), fd));
    } else {
      require(posix_spawn_file_actions_addclose(&actions, fd));
    }
  }

  // Keeps the first error: a child that starts in another way than asked for must not start.
  void require(int error) {
    if (setupError == 0) setupError = error;
  }

  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
  std::vector<FileDescriptor> copies;
  int setupError = 0;
};

}  // namespace

int ChildProcess::start(const std::string& program, std::vector<std::string> arguments,
                        const std::string& nativeDirectory) {
  const int error = SpawnSetup(nativeDirectory).start(program, std::move(arguments), pid);
  if (error != 0) {
    pid = 0;
  } else {
    descriptor.emplace(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
  }
  return error;
}

bool ChildProcess::hasEnded() {
  if (ended || pid == 0) return true;
  int status = 0;
  const pid_t waitedFor = waitpid(pid, &status, WNOHANG);
  if (waitedFor == pid) {
    exitCode = WIFSIGNALED(status) ? kSignalExitBase + static_cast<DWORD>(WTERMSIG(status))
                                   : static_cast<DWORD>(WEXITSTATUS(status));
  }
  ended = waitedFor == pid || (waitedFor < 0 && !exists());
  return ended;
}

bool ChildProcess::waitUntil(std::optional<Clock::time_point> end) {
  milliseconds nap(1);
  while (!hasEnded()) {
    milliseconds left(INT_MAX);
    if (end) {
      left = std::min(left, std::chrono::ceil<milliseconds>(*end - Clock::now()));
      if (left <= milliseconds::zero()) return hasEnded();
    }
    pollfd poller{descriptor->get(), POLLIN, 0};
    if (poller.fd < 0 || poll(&poller, 1, static_cast<int>(left.count())) < 0) {
      std::this_thread::sleep_for(std::min(nap, left));
      nap = std::min(nap * 2, milliseconds(50));
    }
  }
  return true;
}

std::optional<DWORD> ChildProcess::currentExitCode() {
  return hasEnded() ? exitCode : kStillActive;
}

// For when it cannot be waited for.
bool ChildProcess::exists() const {
  if (descriptor->get() < 0) return kill(pid, 0) == 0 || errno != ESRCH;
  pollfd poller{descriptor->get(), POLLIN, 0};
  return poll(&poller, 1, 0) != 1;
}

}  // namespace tolvanix::winapi
