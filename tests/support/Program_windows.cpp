#include "support/Program.h"

// clang-format off: windows.h comes first.
#include <windows.h>
// clang-format on

#include <array>
#include <future>
#include <memory>
#include <regex>
#include <stdexcept>

#include "support/Files.h"

namespace tolvanix::test {

namespace {

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

void require(bool success, const std::string& what) {
  if (!success) throw std::runtime_error(what + ": error " + std::to_string(GetLastError()));
}

// The way that the C runtime takes a command line apart, backwards: backslashes count only before
// a quote, where each needs another, as does the quote itself.
std::string quoted(const std::string& argument) {
  std::string result = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') result.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    result += c;
  }
  return result.append(backslashes, '\\') + '"';
}

Handle openInheritable(const std::filesystem::path& file, DWORD access, DWORD creation) {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  HANDLE handle = CreateFileA(file.string().c_str(), access, FILE_SHARE_READ, &inheritable,
                              creation, FILE_ATTRIBUTE_NORMAL, nullptr);
  require(handle != INVALID_HANDLE_VALUE, "cannot open " + file.string());
  return Handle(handle);
}

// With the line ends that the C runtime makes of those in a text.
std::string readToEnd(HANDLE pipe) {
  std::string bytes;
  std::array<char, 65536> block;
  for (DWORD count = 0; ReadFile(pipe, block.data(), block.size(), &count, nullptr) != FALSE;) {
    bytes.append(block.data(), count);
  }
  return std::regex_replace(bytes, std::regex("\r\n"), "\n");
}

Handle start(const std::string& program, std::string commandLine, HANDLE output,
             const std::filesystem::path& errors) {
  const Handle input = openInheritable("NUL", GENERIC_READ, OPEN_EXISTING);
  const Handle error = openInheritable(errors, GENERIC_WRITE, CREATE_ALWAYS);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input.get();
  startup.hStdOutput = output;
  startup.hStdError = error.get();
  PROCESS_INFORMATION information{};
  require(CreateProcessA(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                         nullptr, &startup, &information) != FALSE,
          "cannot start " + program);
  CloseHandle(information.hThread);
  return Handle(information.hProcess);
}

}  // namespace

ProgramResult runProgram(const std::filesystem::path& program, const Arguments& arguments) {
  std::string commandLine = quoted(program.string());
  for (const std::string& argument : arguments) commandLine += ' ' + quoted(argument);
  HANDLE readHandle = nullptr;
  HANDLE writeHandle = nullptr;
  require(CreatePipe(&readHandle, &writeHandle, nullptr, 0) != FALSE, "cannot make a pipe");
  const Handle readEnd(readHandle);
  Handle writeEnd(writeHandle);
  SetHandleInformation(writeHandle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);

  // Standard error is left to a process that outlives the program; a file waits for none.
  const TempDir captured;
  const Handle process = start(program.string(), commandLine, writeHandle, captured / "errors");
  writeEnd.reset();
  auto output = std::async(std::launch::async, readToEnd, readHandle);
  DWORD exitCode = 0;
  if (WaitForSingleObject(process.get(), 30000) != WAIT_OBJECT_0) {
    TerminateProcess(process.get(), 1);
    require(false, commandLine + " is not done in time");
  }
  GetExitCodeProcess(process.get(), &exitCode);
  require(exitCode < 0xC0000000, commandLine + " crashed: " + std::to_string(exitCode));
  return {static_cast<int>(exitCode), output.get(), readText(captured / "errors")};
}

}  // namespace tolvanix::test
