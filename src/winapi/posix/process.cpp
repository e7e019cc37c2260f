#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "winapi/Owner.h"
#include "winapi/posix/base/CommandLine.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/base/HandleTable.h"
#include "winapi/posix/base/OutOfMemory.h"
#include "winapi/posix/base/Paths.h"
#include "winapi/winapi.h"

namespace {

using std::chrono::milliseconds;
using tolvanix::KernelObjectOwner;
using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::pathError;
using Clock = std::chrono::steady_clock;

constexpr int kStandardStreams = 3;
constexpr DWORD kStillActive = 259;
constexpr DWORD kSignalExitBase = 128;
constexpr DWORD kNoTimeLimit = 0xFFFFFFFF;

// The platform knows no signals: a write that nobody reads any more or that makes a file too large
// fails instead of ending the program, and the end of a child is not lost, whatever this process
// was started with.
const bool signalsSet = [] {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGCHLD, SIG_DFL);
  return true;
}();

// Writes all, also to what does not block (O_NONBLOCK is set for every process that has the file
// open, so it may be another's doing): waits then until more is taken. The count of bytes written;
// fewer than all with errno.
std::size_t writeFully(int descriptor, const char* bytes, std::size_t size) {
  std::size_t written = 0;
  while (written < size) {
    const ssize_t count = write(descriptor, bytes + written, size - written);
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno == EAGAIN) {
      pollfd poller{descriptor, POLLOUT, 0};
      poll(&poller, 1, -1);
    } else if (errno != EINTR) {
      break;
    }
  }
  return written;
}

// The C library would lose what a file that does not block refuses: its standard output writes as
// the platform does, too.
const bool standardOutputSet = [] {
  cookie_io_functions_t functions{};
  functions.write = [](void*, const char* bytes, std::size_t size) {
    return static_cast<ssize_t>(writeFully(STDOUT_FILENO, bytes, size));
  };
  std::FILE* const waiting = fopencookie(nullptr, "w", functions);
  if (waiting != nullptr) stdout = waiting;
  return true;
}();

DWORD errnoError(int error) {
  switch (error) {
    case EPIPE:
      return ERROR_BROKEN_PIPE;
    case EBADF:
      return ERROR_ACCESS_DENIED;  // open, but not in this direction
    default:
      return pathError(error, ".");
  }
}

BOOL fail(DWORD error) {
  SetLastError(error);
  return FALSE;
}

// A file descriptor of ours. Those of the standard streams are the whole process's, and stay open.
class Descriptor {
 public:
  explicit Descriptor(int owned = -1) : fd(owned) {}
  Descriptor(Descriptor&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (fd >= kStandardStreams) close(fd);
  }
  int get() const { return fd; }

  // Another one for the same stream, above the standard ones and closed in every child.
  Descriptor duplicate() const { return duplicateOf(fd); }

  // Takes one that was just opened, which has a standard stream's number when that is not open.
  static Descriptor aboveStandard(int opened) {
    if (opened >= kStandardStreams) return Descriptor(opened);
    Descriptor copy = duplicateOf(opened);
    close(opened);
    return copy;
  }

 private:
  static Descriptor duplicateOf(int fd) {
    return Descriptor(fcntl(fd, F_DUPFD_CLOEXEC, kStandardStreams));
  }

  int fd;
};

// What CloseHandle closes.
class KernelObject {
 public:
  KernelObject() = default;
  KernelObject(const KernelObject&) = delete;
  KernelObject& operator=(const KernelObject&) = delete;
  virtual ~KernelObject() = default;
};

tolvanix::winapi::HandleTable<std::unique_ptr<KernelObject>, 0x4F>& kernelObjects() {
  static tolvanix::winapi::HandleTable<std::unique_ptr<KernelObject>, 0x4F> table;
  return table;
}

HANDLE openHandle(std::unique_ptr<KernelObject> object) {
  return kernelObjects().open(std::move(object));
}

class Stream : public KernelObject {
 public:
  Stream(Descriptor open, bool forChildren) : descriptor(std::move(open)), inherits(forChildren) {}
  const Descriptor descriptor;
  bool inherits;
};

// The streams that this process was started with, which have handles even when there is no memory:
// the addresses of these.
class StandardStreams {
 public:
  StandardStreams() {
    for (int fd = 0; fd < kStandardStreams; ++fd) {
      if (fcntl(fd, F_GETFD) < 0) continue;
      std::optional<Stream>& stream = streams[static_cast<std::size_t>(fd)];
      stream.emplace(Descriptor(fd), true);
      handles[static_cast<std::size_t>(fd)] = &stream;
    }
  }

  // Null for any other handle.
  std::optional<Stream>* find(const void* handle) {
    for (std::optional<Stream>& stream : streams) {
      if (&stream == handle && stream) return &stream;
    }
    return nullptr;
  }

  // What GetStdHandle returns, by file descriptor. Null for a stream that is not open.
  std::array<HANDLE, kStandardStreams> handles{};

 private:
  std::array<std::optional<Stream>, kStandardStreams> streams;
};

StandardStreams& standardStreams() {
  static StandardStreams streams;
  return streams;
}

KernelObject* kernelObject(HANDLE handle) {
  if (auto* const stream = standardStreams().find(handle)) return &**stream;
  const std::unique_ptr<KernelObject>* const object = kernelObjects().find(handle);
  return object != nullptr ? object->get() : nullptr;
}

// Null, with ERROR_INVALID_HANDLE, when the handle stands for no object of that kind.
template <typename Kind>
Kind* handleObject(HANDLE handle) {
  auto* const found = dynamic_cast<Kind*>(kernelObject(handle));
  if (found == nullptr) SetLastError(ERROR_INVALID_HANDLE);
  return found;
}

// A child's first thread, which the program gets a handle to and closes.
class Thread : public KernelObject {};

class Process : public KernelObject {
 public:
  // Made before its child is: what cannot be made for lack of memory could not be waited for.
  Process() = default;
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  // Also takes the end of the child off the system's books.
  ~Process() override { hasEnded(); }

  // Without a descriptor (kernels before 5.3, some sandboxes) the wait looks now and then.
  void adopt(pid_t child) {
    pid = child;
    descriptor.emplace(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
  }

  bool hasEnded() {
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

  // True when the child has ended by then; the last look is after the time.
  bool waitUntil(std::optional<Clock::time_point> end) {
    milliseconds nap(1);
    while (!hasEnded()) {
      milliseconds left(INT_MAX);
      if (end) {
        left = std::min(left, std::chrono::ceil<milliseconds>(*end - Clock::now()));
        if (left <= milliseconds::zero()) return hasEnded();
      }
      if (descriptor->get() >= 0) {
        pollfd poller{descriptor->get(), POLLIN, 0};
        poll(&poller, 1, static_cast<int>(left.count()));
      } else {
        std::this_thread::sleep_for(std::min(nap, left));
        nap = std::min(nap * 2, milliseconds(50));
      }
    }
    return true;
  }

  // None when somebody else's wait, of a library perhaps, took it.
  std::optional<DWORD> currentExitCode() { return hasEnded() ? exitCode : kStillActive; }

 private:
  // For when it cannot be waited for.
  bool exists() const {
    if (descriptor->get() < 0) return kill(pid, 0) == 0 || errno != ESRCH;
    pollfd poller{descriptor->get(), POLLIN, 0};
    return poll(&poller, 1, 0) != 1;
  }

  pid_t pid = 0;  // no child yet
  std::optional<Descriptor> descriptor;
  bool ended = false;
  std::optional<DWORD> exitCode;
};

HANDLE* standardHandle(DWORD stdHandle) {
  const DWORD index = STD_INPUT_HANDLE - stdHandle;
  return index < kStandardStreams ? &standardStreams().handles[index] : nullptr;
}

bool isPipe(const Descriptor& descriptor) {
  struct stat status {};
  return fstat(descriptor.get(), &status) == 0 && S_ISFIFO(status.st_mode);
}

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
    const auto* const stream = handleObject<Stream>(standardStreams().handles[index]);
    if (stream != nullptr && stream->inherits) {
      copies.push_back(stream->descriptor.duplicate());
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
  std::vector<Descriptor> copies;
  int setupError = 0;
};

DWORD spawnError(int error, const std::string& program) {
  switch (error) {
    case ENOEXEC:
    case ELIBBAD:
      return ERROR_BAD_EXE_FORMAT;
    default:
      return pathError(error, program);
  }
}

}  // namespace

HANDLE GetCurrentProcess() {
  return INVALID_HANDLE_VALUE;
}

void ExitProcess(UINT exitCode) {
  _exit(static_cast<int>(exitCode));
}

void GetStartupInfoA(STARTUPINFOA* startupInfo) {
  *startupInfo = {};
  startupInfo->cb = sizeof *startupInfo;
}

HANDLE GetStdHandle(DWORD stdHandle) {
  const HANDLE* const handle = standardHandle(stdHandle);
  if (handle != nullptr) return *handle;
  SetLastError(ERROR_INVALID_HANDLE);
  return INVALID_HANDLE_VALUE;
}

BOOL SetStdHandle(DWORD stdHandle, HANDLE handle) {
  HANDLE* const place = standardHandle(stdHandle);
  if (place == nullptr) return fail(ERROR_INVALID_HANDLE);
  *place = handle;
  return TRUE;
}

BOOL CreatePipe(HANDLE* readPipe, HANDLE* writePipe, SECURITY_ATTRIBUTES* attributes,
                DWORD /*size: a suggestion*/) try {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return fail(errnoError(errno));
  Descriptor readEnd = Descriptor::aboveStandard(ends[0]);
  Descriptor writeEnd = Descriptor::aboveStandard(ends[1]);
  const bool inherits = attributes != nullptr && attributes->bInheritHandle != FALSE;
  KernelObjectOwner read(openHandle(std::make_unique<Stream>(std::move(readEnd), inherits)));
  *writePipe = openHandle(std::make_unique<Stream>(std::move(writeEnd), inherits));
  *readPipe = read.release();
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target,
                     DWORD /*desiredAccess*/, BOOL inheritHandle, DWORD options) try {
  if (sourceProcess != GetCurrentProcess() || targetProcess != GetCurrentProcess() ||
      options != DUPLICATE_SAME_ACCESS) {
    return fail(ERROR_NOT_SUPPORTED);
  }
  const auto* const stream = handleObject<Stream>(source);
  if (stream == nullptr) return FALSE;
  Descriptor copy = stream->descriptor.duplicate();
  if (copy.get() < 0) return fail(errnoError(errno));
  *target = openHandle(std::make_unique<Stream>(std::move(copy), inheritHandle != FALSE));
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

BOOL GetHandleInformation(HANDLE handle, DWORD* flags) {
  const auto* const stream = handleObject<Stream>(handle);
  if (stream == nullptr) return FALSE;
  *flags = stream->inherits ? HANDLE_FLAG_INHERIT : 0;
  return TRUE;
}

BOOL SetHandleInformation(HANDLE handle, DWORD mask, DWORD flags) {
  if (mask != HANDLE_FLAG_INHERIT) return fail(ERROR_NOT_SUPPORTED);
  auto* const stream = handleObject<Stream>(handle);
  if (stream == nullptr) return FALSE;
  stream->inherits = (flags & HANDLE_FLAG_INHERIT) != 0;
  return TRUE;
}

BOOL ReadFile(HANDLE file, void* buffer, DWORD bytesToRead, DWORD* bytesRead, void* overlapped) {
  if (overlapped != nullptr) return fail(ERROR_NOT_SUPPORTED);
  *bytesRead = 0;
  const auto* const stream = handleObject<Stream>(file);
  if (stream == nullptr) return FALSE;
  const ssize_t count =
      tolvanix::winapi::readUninterrupted(stream->descriptor.get(), buffer, bytesToRead);
  if (count < 0) return fail(errnoError(errno));
  // The end of a file is a read of nothing; the end of a pipe is a failure.
  if (count == 0 && bytesToRead > 0 && isPipe(stream->descriptor)) return fail(ERROR_BROKEN_PIPE);
  *bytesRead = static_cast<DWORD>(count);
  return TRUE;
}

BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytesToWrite, DWORD* bytesWritten,
               void* overlapped) {
  if (overlapped != nullptr) return fail(ERROR_NOT_SUPPORTED);
  *bytesWritten = 0;
  const auto* const stream = handleObject<Stream>(file);
  if (stream == nullptr) return FALSE;
  *bytesWritten = static_cast<DWORD>(
      writeFully(stream->descriptor.get(), static_cast<const char*>(buffer), bytesToWrite));
  return *bytesWritten == bytesToWrite ? TRUE : fail(errnoError(errno));
}

BOOL PeekNamedPipe(HANDLE pipe, void* buffer, DWORD /*size*/, DWORD* bytesRead,
                   DWORD* bytesAvailable, DWORD* bytesLeft) {
  if (buffer != nullptr) return fail(ERROR_NOT_SUPPORTED);
  const auto* const stream = handleObject<Stream>(pipe);
  if (stream == nullptr) return FALSE;
  if (!isPipe(stream->descriptor)) return fail(ERROR_INVALID_PARAMETER);
  // Asked for the end first: what was written before it is then counted.
  pollfd poller{stream->descriptor.get(), POLLIN, 0};
  const bool atEnd = poll(&poller, 1, 0) == 1 && (poller.revents & (POLLHUP | POLLIN)) == POLLHUP;
  if (atEnd) return fail(ERROR_BROKEN_PIPE);
  int count = 0;
  if (ioctl(stream->descriptor.get(), FIONREAD, &count) != 0) return fail(errnoError(errno));
  if (bytesRead != nullptr) *bytesRead = 0;
  if (bytesAvailable != nullptr) *bytesAvailable = static_cast<DWORD>(count);
  if (bytesLeft != nullptr) *bytesLeft = 0;  // the pipe has no messages
  return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
  if (auto* const stream = standardStreams().find(handle)) {
    stream->reset();
    return TRUE;
  }
  return kernelObjects().close(handle) ? TRUE : fail(ERROR_INVALID_HANDLE);
}

// NOLINTNEXTLINE(readability-non-const-parameter): the command line's type is the published one.
BOOL CreateProcessA(const char* applicationName, char* commandLine,
                    SECURITY_ATTRIBUTES* processAttributes, SECURITY_ATTRIBUTES* threadAttributes,
                    BOOL inheritHandles, DWORD creationFlags, void* environment,
                    const char* currentDirectory, STARTUPINFOA* /*startupInfo: windows only*/,
                    PROCESS_INFORMATION* processInformation) try {
  if (applicationName != nullptr || processAttributes != nullptr || threadAttributes != nullptr ||
      inheritHandles == FALSE || creationFlags != 0 || environment != nullptr) {
    return fail(ERROR_NOT_SUPPORTED);
  }
  if (commandLine == nullptr) return fail(ERROR_INVALID_PARAMETER);
  const tolvanix::winapi::Program program = tolvanix::winapi::findProgram(commandLine);
  if (program.nativePath.empty()) return fail(program.error);

  const std::string directory =
      tolvanix::winapi::fullNativePath(currentDirectory != nullptr ? currentDirectory : ".");
  struct stat status {};
  const bool isDirectory = stat(directory.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (!isDirectory || (currentDirectory != nullptr && *currentDirectory == '\0')) {
    return fail(ERROR_DIRECTORY);
  }

  std::vector<std::string> arguments = tolvanix::winapi::splitArguments(program.arguments);
  arguments.insert(arguments.begin(), program.nativePath);
  KernelObjectOwner process(openHandle(std::make_unique<Process>()));
  KernelObjectOwner thread(openHandle(std::make_unique<Thread>()));
  pid_t pid = 0;
  const int error = SpawnSetup(directory).start(program.nativePath, std::move(arguments), pid);
  if (error != 0) return fail(spawnError(error, program.nativePath));

  handleObject<Process>(process.get())->adopt(pid);
  processInformation->hProcess = process.release();
  processInformation->hThread = thread.release();
  processInformation->dwProcessId = static_cast<DWORD>(pid);
  processInformation->dwThreadId = static_cast<DWORD>(pid);
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
  auto* const process = handleObject<Process>(handle);
  if (process == nullptr) return WAIT_FAILED;
  std::optional<Clock::time_point> end;
  if (milliseconds != kNoTimeLimit) end = Clock::now() + std::chrono::milliseconds(milliseconds);
  return process->waitUntil(end) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

BOOL GetExitCodeProcess(HANDLE process, DWORD* exitCode) {
  auto* const child = handleObject<Process>(process);
  if (child == nullptr) return FALSE;
  const std::optional<DWORD> current = child->currentExitCode();
  if (!current) return fail(ERROR_GEN_FAILURE);
  *exitCode = *current;
  return TRUE;
}
