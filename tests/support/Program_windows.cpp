#include "support/Program.h"

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>

#include <cstdlib>
#include <stdexcept>

#include "support/Files.h"

namespace tolvanix::test {

namespace {

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

// Until the end of the scope a standard stream is that file.
class Redirection {
 public:
  Redirection(int standardStream, const std::string& file)
      : stream(standardStream), before(_dup(standardStream)) {
    const int opened = _open(file.c_str(), _O_RDWR | _O_CREAT | _O_BINARY, _S_IREAD | _S_IWRITE);
    _dup2(opened, stream);
    _close(opened);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;
  ~Redirection() {
    _dup2(before, stream);
    _close(before);
  }

 private:
  int stream;
  int before;
};

// On a busy computer Wine fails to start about one process of 7,000, with this error and before any
// of its code runs. A program that crashed is never run again: it leaves _doserrno as it is.
std::intptr_t startAndWait(const std::string& program, const char* const* arguments) {
  constexpr unsigned long kInternalError = 1359;
  constexpr int kAttempts = 3;
  for (int attempt = 1;; ++attempt) {
    _doserrno = 0;
    const std::intptr_t exitCode = _spawnv(_P_WAIT, program.c_str(), arguments);
    if (exitCode >= 0 || _doserrno != kInternalError || attempt == kAttempts) return exitCode;
  }
}

}  // namespace

// As a C program starts others: its table of open files goes along.
ProgramResult runProgram(const std::filesystem::path& program, const Arguments& arguments) {
  std::vector<std::string> texts{quoted(program.string())};
  for (const std::string& argument : arguments) texts.push_back(quoted(argument));
  std::vector<const char*> pointers;
  for (const std::string& text : texts) pointers.push_back(text.c_str());
  pointers.push_back(nullptr);
  const TempDir captured;
  std::intptr_t exitCode = -1;
  {
    const Redirection input(0, "NUL");
    const Redirection output(1, (captured / "output").string());
    const Redirection errors(2, (captured / "errors").string());
    exitCode = startAndWait(program.string(), pointers.data());
  }
  if (exitCode < 0) {
    throw std::runtime_error(program.string() + " cannot start, or crashed (exit code " +
                             std::to_string(exitCode) + ", error " + std::to_string(_doserrno) +
                             "): " + readText(captured / "errors"));
  }
  ProgramResult result{static_cast<int>(exitCode), readText(captured / "output"),
                       readText(captured / "errors")};
  remove(captured / "output");  // fails while another process can write there
  return result;
}

}  // namespace tolvanix::test
