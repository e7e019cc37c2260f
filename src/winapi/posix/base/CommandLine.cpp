#include "winapi/posix/base/CommandLine.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "winapi/posix/base/Paths.h"

namespace tolvanix::winapi {
namespace {

constexpr std::string_view kBlanks = " \t";

// 0, or the errno of looking for a file of that name; a directory is no such file.
int lookForFile(const std::string& nativePath) {
  struct stat status {};
  if (stat(nativePath.c_str(), &status) != 0) return errno;
  return S_ISDIR(status.st_mode) ? EACCES : 0;
}

// Sets the path, or the error.
void findFile(std::string_view name, Program& program) {
  std::string path = fullNativePath(name);
  int error = lookForFile(path);
  const bool hasExtension = path.find('.', path.rfind('/') + 1) != std::string::npos;
  if (error != 0 && !hasExtension) {
    path += ".exe";
    error = lookForFile(path);
  }
  if (error == 0) {
    program.nativePath = path;
  } else {
    program.error = pathError(error, path);
  }
}

}  // namespace

Program findProgram(std::string_view commandLine) {
  Program program;
  if (commandLine.starts_with('"')) {
    const std::size_t end = std::min(commandLine.find('"', 1), commandLine.size());
    program.arguments = commandLine.substr(std::min(end + 1, commandLine.size()));
    findFile(commandLine.substr(1, end - 1), program);
    return program;
  }
  DWORD firstError = ERROR_SUCCESS;
  for (std::size_t end = 0; end < commandLine.size();) {
    end = std::min(commandLine.find_first_of(kBlanks, end + 1), commandLine.size());
    program.arguments = commandLine.substr(end);
    findFile(commandLine.substr(0, end), program);
    if (!program.nativePath.empty()) return program;
    if (firstError == ERROR_SUCCESS) firstError = program.error;
  }
  program.error = firstError != ERROR_SUCCESS ? firstError : ERROR_FILE_NOT_FOUND;
  return program;
}

std::vector<std::string> splitArguments(std::string_view arguments) {
  std::vector<std::string> split;
  std::size_t at = 0;
  const auto is = [&arguments](std::size_t position, char c) {
    return position < arguments.size() && arguments[position] == c;
  };
  while ((at = arguments.find_first_not_of(kBlanks, at)) != std::string_view::npos) {
    std::string& argument = split.emplace_back();
    bool quoted = false;
    while (at < arguments.size()) {
      const char c = arguments[at];
      if (!quoted && kBlanks.find(c) != std::string_view::npos) break;
      if (c == '\\') {
        // Before a quotation mark, and only there, a backslash guards what follows.
        const std::size_t end = std::min(arguments.find_first_not_of('\\', at), arguments.size());
        const std::size_t count = end - at;
        const bool beforeQuote = is(end, '"');
        argument.append(beforeQuote ? count / 2 : count, '\\');
        at = end;
        if (beforeQuote && count % 2 == 1) {
          argument += '"';
          ++at;
        }
      } else if (c != '"') {
        argument += c;
        ++at;
      } else if (quoted && is(at + 1, '"')) {
        argument += '"';
        at += 2;
      } else {
        quoted = !quoted;
        ++at;
      }
    }
  }
  return split;
}

}  // namespace tolvanix::winapi
