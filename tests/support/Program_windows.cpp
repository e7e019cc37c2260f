// clang-format off: windows.h comes first.
#include <windows.h>
// clang-format on

#include <array>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "support/Files.h"
#include "support/Program.h"

namespace tolvanix::test {

namespace {

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what + ": error " + std::to_string(GetLastError()));
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
  result.append(backslashes, '\\');
  return result + '"';
}

std::string commandLine(const ProgramCall& call) {
  std::string result = quoted(call.program.string());
  for (const std::string& argument : call.arguments) result += ' ' + quoted(argument);
  return result;
}

// A child inherits the variables of this process.
class ScopedVariable {
 public:
  ScopedVariable(std::string variable, const std::string& value) : name(std::move(variable)) {
    const DWORD size = GetEnvironmentVariableA(name.c_str(), nullptr, 0);
    if (size != 0) {
      before.emplace(size, '\0');
      GetEnvironmentVariableA(name.c_str(), before->data(), size);
    }
    SetEnvironmentVariableA(name.c_str(), value.c_str());
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { SetEnvironmentVariableA(name.c_str(), before ? before->c_str() : nullptr); }

 private:
  std::string name;
  std::optional<std::string> before;
};

Handle openInheritable(const std::filesystem::path& file, DWORD access, DWORD creation) {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  HANDLE handle = CreateFileA(file.string().c_str(), access, FILE_SHARE_READ, &inheritable,
                              creation, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) fail("cannot open " + file.string());
  return Handle(handle);
}

DWORD waitForExitCode(HANDLE process, const ProgramCall& call) {
  const auto limit = std::chrono::milliseconds(call.timeLimit).count();
  if (WaitForSingleObject(process, static_cast<DWORD>(limit)) != WAIT_OBJECT_0) {
    TerminateProcess(process, 1);
    throw std::runtime_error(call.program.string() + " is not done in time");
  }
  DWORD exitCode = 0;
  GetExitCodeProcess(process, &exitCode);
  if (exitCode >= 0xC0000000) {
    throw std::runtime_error(call.program.string() + " crashed: " + std::to_string(exitCode));
  }
  return exitCode;
}

// What the C runtime makes of the line ends.
std::string withPlainLineEnds(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!text.substr(i).starts_with("\r\n")) result += text[i];
  }
  return result;
}

std::string readToEnd(HANDLE pipe) {
  std::string bytes;
  std::array<char, 65536> block;
  DWORD count = 0;
  while (ReadFile(pipe, block.data(), block.size(), &count, nullptr) != FALSE) {
    bytes.append(block.data(), count);
  }
  return withPlainLineEnds(bytes);
}

Handle start(const ProgramCall& call, HANDLE output, const std::filesystem::path& errors) {
  std::vector<std::unique_ptr<ScopedVariable>> variables;
  for (const auto& [name, value] : call.environment) {
    variables.push_back(std::make_unique<ScopedVariable>(name, value));
  }
  const Handle input = openInheritable("NUL", GENERIC_READ, OPEN_EXISTING);
  const Handle error = openInheritable(errors, GENERIC_WRITE, CREATE_ALWAYS);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input.get();
  startup.hStdOutput = output;
  startup.hStdError = error.get();
  PROCESS_INFORMATION information{};
  std::string line = commandLine(call);
  if (CreateProcessA(call.program.string().c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                     call.currentDirectory.string().c_str(), &startup, &information) == FALSE) {
    fail("cannot start " + call.program.string());
  }
  CloseHandle(information.hThread);
  return Handle(information.hProcess);
}

}  // namespace

ProgramResult runProgram(const ProgramCall& call) {
  HANDLE readHandle = nullptr;
  HANDLE writeHandle = nullptr;
  if (CreatePipe(&readHandle, &writeHandle, nullptr, 0) == FALSE) fail("cannot make a pipe");
  const Handle readEnd(readHandle);
  Handle writeEnd(writeHandle);
  SetHandleInformation(writeHandle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);

  // Standard error is left to a process that outlives the program; a file waits for none.
  const TempDir captured;
  const Handle process = start(call, writeHandle, captured / "errors");
  writeEnd.reset();
  auto output = std::async(std::launch::async, readToEnd, readHandle);
  const DWORD exitCode = waitForExitCode(process.get(), call);
  return {static_cast<int>(exitCode), output.get(), readText(captured / "errors")};
}

}  // namespace tolvanix::test
