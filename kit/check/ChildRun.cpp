#include "check/ChildRun.h"

#include "winapi/Owner.h"

namespace tolvanix::kit {

namespace {

constexpr DWORD kNoTimeLimit = 0xFFFFFFFF;

// While it lives, a standard stream of this process, and of a child started meanwhile, is another.
class ReplacedStream {
 public:
  ReplacedStream(DWORD stream, HANDLE replacement) : number(stream), before(GetStdHandle(stream)) {
    SetStdHandle(number, replacement);
  }
  ReplacedStream(const ReplacedStream&) = delete;
  ReplacedStream& operator=(const ReplacedStream&) = delete;
  ~ReplacedStream() { SetStdHandle(number, before); }

 private:
  DWORD number;
  HANDLE before;
};

KernelObjectOwner start(std::string commandLine, HANDLE output) {
  const ReplacedStream standardOutput(STD_OUTPUT_HANDLE, output);
  const ReplacedStream standardError(STD_ERROR_HANDLE, output);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                     &startup, &child) == FALSE) {
    return {};
  }
  const KernelObjectOwner thread(child.hThread);
  return KernelObjectOwner(child.hProcess);
}

std::string readToEnd(HANDLE pipe) {
  std::string text;
  char block[4096];
  DWORD count = 0;
  while (ReadFile(pipe, block, sizeof block, &count, nullptr) != FALSE) text.append(block, count);
  return text;
}

}  // namespace

std::optional<ChildRun> runChild(const std::string& commandLine) {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, &inheritable, 0) == FALSE) return std::nullopt;
  const KernelObjectOwner readEnd(read);
  KernelObjectOwner writeEnd(write);
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  const KernelObjectOwner process = start(commandLine, write);
  writeEnd.reset();
  if (!process) return std::nullopt;
  ChildRun run{};
  run.output = readToEnd(read);
  WaitForSingleObject(process.get(), kNoTimeLimit);
  if (GetExitCodeProcess(process.get(), &run.exitCode) == FALSE) return std::nullopt;
  return run;
}

}  // namespace tolvanix::kit
