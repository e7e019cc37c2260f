#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "winapi/Owner.h"
#include "winapi/posix/base/ChildProcess.h"
#include "winapi/posix/base/CommandLine.h"
#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/base/KernelObjects.h"
#include "winapi/posix/base/Paths.h"

namespace {

using tolvanix::KernelObjectOwner;
using tolvanix::winapi::aboveStandard;
using tolvanix::winapi::ChildProcess;
using tolvanix::winapi::fail;
using tolvanix::winapi::FileDescriptor;
using tolvanix::winapi::handleObject;
using tolvanix::winapi::KernelObject;
using tolvanix::winapi::kStandardStreams;
using tolvanix::winapi::openHandle;
using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::pathError;
using tolvanix::winapi::standardHandles;
using tolvanix::winapi::Stream;
using Clock = std::chrono::steady_clock;

constexpr DWORD kNoTimeLimit = 0xFFFFFFFF;

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

bool isPipe(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

HANDLE* standardHandle(DWORD stdHandle) {
  const DWORD index = STD_INPUT_HANDLE - stdHandle;
  return index < kStandardStreams ? &standardHandles()[index] : nullptr;
}

// A child's first thread, which the program gets a handle to and closes.
class Thread : public KernelObject {};

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
  FileDescriptor readEnd = aboveStandard(ends[0]);
  FileDescriptor writeEnd = aboveStandard(ends[1]);
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
  FileDescriptor copy = tolvanix::winapi::duplicateAboveStandard(stream->get());
  if (copy.get() < 0) return fail(errnoError(errno));
  *target = openHandle(std::make_unique<Stream>(std::move(copy), inheritHandle != FALSE));
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

BOOL GetHandleInformation(HANDLE handle, DWORD* flags) {
  const auto* const stream = handleObject<Stream>(handle);
  if (stream == nullptr) return FALSE;
  *flags = stream->isInherited() ? HANDLE_FLAG_INHERIT : 0;
  return TRUE;
}

BOOL SetHandleInformation(HANDLE handle, DWORD mask, DWORD flags) {
  if (mask != HANDLE_FLAG_INHERIT) return fail(ERROR_NOT_SUPPORTED);
  auto* const stream = handleObject<Stream>(handle);
  if (stream == nullptr) return FALSE;
  stream->setInherited((flags & HANDLE_FLAG_INHERIT) != 0);
  return TRUE;
}

BOOL ReadFile(HANDLE file, void* buffer, DWORD bytesToRead, DWORD* bytesRead, void* overlapped) {
  if (overlapped != nullptr) return fail(ERROR_NOT_SUPPORTED);
  *bytesRead = 0;
  const auto* const stream = handleObject<Stream>(file);
  if (stream == nullptr) return FALSE;
  const ssize_t count = tolvanix::winapi::readUninterrupted(stream->get(), buffer, bytesToRead);
  if (count < 0) return fail(errnoError(errno));
  // The end of a file is a read of nothing; the end of a pipe is a failure.
  if (count == 0 && bytesToRead > 0 && isPipe(stream->get())) return fail(ERROR_BROKEN_PIPE);
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
      tolvanix::winapi::writeFully(stream->get(), static_cast<const char*>(buffer), bytesToWrite));
  return *bytesWritten == bytesToWrite ? TRUE : fail(errnoError(errno));
}

BOOL PeekNamedPipe(HANDLE pipe, void* buffer, DWORD /*size*/, DWORD* bytesRead,
                   DWORD* bytesAvailable, DWORD* bytesLeft) {
  if (buffer != nullptr) return fail(ERROR_NOT_SUPPORTED);
  const auto* const stream = handleObject<Stream>(pipe);
  if (stream == nullptr) return FALSE;
  if (!isPipe(stream->get())) return fail(ERROR_INVALID_PARAMETER);
  // Asked for the end first: what was written before it is then counted.
  pollfd poller{stream->get(), POLLIN, 0};
  const bool atEnd = poll(&poller, 1, 0) == 1 && (poller.revents & (POLLHUP | POLLIN)) == POLLHUP;
  if (atEnd) return fail(ERROR_BROKEN_PIPE);
  int count = 0;
  if (ioctl(stream->get(), FIONREAD, &count) != 0) return fail(errnoError(errno));
  if (bytesRead != nullptr) *bytesRead = 0;
  if (bytesAvailable != nullptr) *bytesAvailable = static_cast<DWORD>(count);
  if (bytesLeft != nullptr) *bytesLeft = 0;  // the pipe has no messages
  return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
  return tolvanix::winapi::closeHandle(handle) ? TRUE : fail(ERROR_INVALID_HANDLE);
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
  KernelObjectOwner process(openHandle(std::make_unique<ChildProcess>()));
  KernelObjectOwner thread(openHandle(std::make_unique<Thread>()));
  auto* const child = handleObject<ChildProcess>(process.get());
  const int error = child->start(program.nativePath, std::move(arguments), directory);
  if (error != 0) return fail(spawnError(error, program.nativePath));

  processInformation->hProcess = process.release();
  processInformation->hThread = thread.release();
  processInformation->dwProcessId = static_cast<DWORD>(child->processId());
  processInformation->dwThreadId = static_cast<DWORD>(child->processId());
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
  auto* const process = handleObject<ChildProcess>(handle);
  if (process == nullptr) return WAIT_FAILED;
  std::optional<Clock::time_point> end;
  if (milliseconds != kNoTimeLimit) end = Clock::now() + std::chrono::milliseconds(milliseconds);
  return process->waitUntil(end) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

BOOL GetExitCodeProcess(HANDLE process, DWORD* exitCode) {
  auto* const child = handleObject<ChildProcess>(process);
  if (child == nullptr) return FALSE;
  const std::optional<DWORD> current = child->currentExitCode();
  if (!current) return fail(ERROR_GEN_FAILURE);
  *exitCode = *current;
  return TRUE;
}
