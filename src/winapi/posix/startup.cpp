#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "winapi/StartUp.h"
#include "winapi/posix/base/FileBytes.h"

namespace {

// The platform knows no signals: a write that nobody reads any more or that makes a file too large
// fails instead of ending the program, and the end of a child is not lost, whatever this process
// was started with.
void setSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGCHLD, SIG_DFL);
}

// The C library would lose what a file that does not block refuses: its standard output writes as
// the platform does, too.
void setStandardOutput() {
  cookie_io_functions_t functions{};
  functions.write = [](void*, const char* bytes, std::size_t size) {
    return static_cast<ssize_t>(tolvanix::winapi::writeFully(STDOUT_FILENO, bytes, size));
  };
  std::FILE* const waiting = fopencookie(nullptr, "w", functions);
  if (waiting != nullptr) stdout = waiting;
}

// A relative name is meant in the current directory; also for programs that this one starts
// elsewhere.
void makeMachineAbsolute() {
  const char* const name = std::getenv("TOLVANIX_MACHINE");
  if (name == nullptr || *name == '\0' || *name == '/') return;
  char absolute[2 * PATH_MAX];
  if (getcwd(absolute, PATH_MAX) == nullptr) return;
  const std::size_t folder = std::strlen(absolute);
  std::snprintf(absolute + folder, sizeof absolute - folder, "/%s", name);
  setenv("TOLVANIX_MACHINE", absolute, 1);
}

}  // namespace

void tolvanix::winapi::startUp() {
  setSignals();
  setStandardOutput();
  makeMachineAbsolute();
}
