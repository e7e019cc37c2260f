#include "install/ExecCmd.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "install/DevHelper.h"
#include "install/ProgressLine.h"
#include "log/DebugWriter.h"
#include "winapi/Owner.h"

namespace tolvanix {
namespace {

constexpr DWORD kDirectorySize = 256;
constexpr int kDefaultTimeLimitSeconds = 1200;
constexpr std::int64_t kLongestWait = 0xFFFFFFFE;  // the next number would wait for ever

// While it lives, no child inherits what standard output is, and so none that outlives its parent
// keeps a reader waiting for our end. Where it is another standard stream too, it has to stay.
class KeptFromChildren {
 public:
  explicit KeptFromChildren(HANDLE standardOutput) : handle(standardOutput) {
    DWORD flags = 0;
    taken = handle != GetStdHandle(STD_INPUT_HANDLE) && handle != GetStdHandle(STD_ERROR_HANDLE) &&
            GetHandleInformation(handle, &flags) != FALSE && (flags & HANDLE_FLAG_INHERIT) != 0 &&
            SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0) != FALSE;
  }
  KeptFromChildren(const KeptFromChildren&) = delete;
  KeptFromChildren& operator=(const KeptFromChildren&) = delete;
  ~KeptFromChildren() {
    if (taken) SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  }

 private:
  HANDLE handle;
  bool taken;
};

// While it lives, this process's standard output, and that of every child started meanwhile, is a
// pipe. When the pipe cannot be had the child is started without.
class StandardOutputPipe {
 public:
  StandardOutputPipe() : previous(GetStdHandle(STD_OUTPUT_HANDLE)) {
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (CreatePipe(&read, &write, &inheritable, 0) == FALSE) return;
    readEnd.reset(read);
    writeEnd.reset(write);
    replaced = SetStdHandle(STD_OUTPUT_HANDLE, write) != FALSE;
    if (!replaced) return;
    kept.emplace(previous);
    // The child must not hold the read end too, or its writes would never fail.
    HANDLE copy = nullptr;
    readable = DuplicateHandle(GetCurrentProcess(), read, GetCurrentProcess(), &copy, 0, FALSE,
                               DUPLICATE_SAME_ACCESS) != FALSE;
    readEnd.reset(copy);
  }
  StandardOutputPipe(const StandardOutputPipe&) = delete;
  StandardOutputPipe& operator=(const StandardOutputPipe&) = delete;
  ~StandardOutputPipe() { putBack(); }

  void putBack() {
    if (replaced) SetStdHandle(STD_OUTPUT_HANDLE, previous);
    replaced = false;
    kept.reset();
    writeEnd.reset();
  }

  // Takes what is there now, and does not wait for the end: a process that the child started and
  // left running may keep the pipe open for as long as it lives. Every piece replaces the one
  // before.
  void drain(char* output, DWORD outputSize) {
    DWORD left = 0;
    if (!readable || outputSize < 2 ||
        PeekNamedPipe(readEnd.get(), nullptr, 0, nullptr, &left, nullptr) == FALSE) {
      return;
    }
    DWORD count = 0;
    while (left > 0 && ReadFile(readEnd.get(), output, std::min(left, outputSize - 1), &count,
                                nullptr) != FALSE) {
      output[count] = '\0';
      left -= count;
    }
  }

 private:
  HANDLE previous;
  bool replaced = false;
  bool readable = false;
  std::optional<KeptFromChildren> kept;
  KernelObjectOwner readEnd;
  KernelObjectOwner writeEnd;
};

// Reports the platform's last error and makes it the exit code.
int fail(DWORD& exitCode, int line) {
  exitCode = GetLastError();
  PrintError(exitCode, "DevHelper, ExecCmd", line);
  return kExecFailed;
}

int runChild(const std::string& directory, std::string commandLine, WORD showWindow,
             DWORD& exitCode, DWORD milliseconds) {
  STARTUPINFOA startup{};
  GetStartupInfoA(&startup);
  // What started this program may have left its table of open files there (the C runtime's spawn
  // functions do), and the child would write to the file that was standard output then.
  startup.lpReserved = nullptr;
  startup.cbReserved2 = 0;
  startup.lpReserved2 = nullptr;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = showWindow != 0 ? SW_SHOW : SW_HIDE;
  PROCESS_INFORMATION child{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                     directory.c_str(), &startup, &child) == FALSE) {
    return fail(exitCode, __LINE__);
  }
  const KernelObjectOwner process(child.hProcess);
  const KernelObjectOwner thread(child.hThread);
  if (WaitForSingleObject(process.get(), milliseconds) == WAIT_TIMEOUT) return kExecTimedOut;
  if (GetExitCodeProcess(process.get(), &exitCode) == FALSE) return fail(exitCode, __LINE__);
  return kExecEnded;
}

// Empty, with a last error, for one that is too long.
std::string resolveDirectory(const char* given) {
  std::string directory;
  if (given == nullptr || *given == '\0') {
    char current[kDirectorySize] = "";
    const DWORD length = GetCurrentDirectoryA(kDirectorySize, current);
    if (length == 0) return directory;
    if (length < kDirectorySize) directory = current;
    TRACE_STEP("ExecCmd: Using GetCurrentDirectory(); strWorkDir = %s\n", directory.c_str());
  } else {
    directory = given;
    if (directory.size() >= kDirectorySize) directory.clear();
    TRACE_STEP("ExecCmd: Using pDir; strWorkDir = %s\n", directory.c_str());
  }
  if (directory.empty()) SetLastError(ERROR_FILENAME_EXCED_RANGE);
  return directory;
}

}  // namespace

int ExecCmd(const char* workingDirectory, const char* commandLine, WORD showWindow, char* output,
            DWORD outputSize, DWORD& exitCode, int timeLimitSeconds, const char* progress) {
  TRACE_STEP("ExecCmd: %s\n", commandLine);
  const std::string directory = resolveDirectory(workingDirectory);
  if (directory.empty()) return fail(exitCode, __LINE__);
  if (timeLimitSeconds <= 0) timeLimitSeconds = kDefaultTimeLimitSeconds;
  const std::int64_t milliseconds = std::min(std::int64_t{timeLimitSeconds} * 1000, kLongestWait);

  const ProgressLine line(progress);
  StandardOutputPipe pipe;
  const int result =
      runChild(directory, commandLine, showWindow, exitCode, static_cast<DWORD>(milliseconds));
  pipe.putBack();
  if (result != kExecTimedOut) pipe.drain(output, outputSize);
  return result;
}

}  // namespace tolvanix
