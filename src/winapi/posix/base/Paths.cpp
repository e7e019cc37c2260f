#include "winapi/posix/base/Paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

namespace tolvanix::winapi {
namespace {

std::string currentDirectory() {
  struct Free {
    void operator()(char* memory) const { std::free(memory); }
  };
  // A null buffer asks glibc for one of the right size.
  const std::unique_ptr<char, Free> path(getcwd(nullptr, 0));
  return path ? path.get() : std::string();
}

// Adds the components of `path` to `full`, a path without a separator at its end.
void appendComponents(std::string& full, std::string_view path) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view component = path.substr(0, end);
    if (component == "..") {
      full.erase(std::min(full.rfind('/'), full.size()));
    } else if (!component.empty() && component != ".") {
      full.append(1, '/').append(component);
    }
    path.remove_prefix(std::min(end + 1, path.size()));
  }
}

bool isDirectory(const std::string& nativePath) {
  struct stat status {};
  return stat(nativePath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::string toNativePath(std::string_view path) {
  std::string native(path);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::string fromNativePath(std::string_view path) {
  std::string converted(path);
  std::replace(converted.begin(), converted.end(), '/', '\\');
  return converted;
}

std::string fullNativePath(std::string_view path) {
  const std::string native = toNativePath(path);
  std::string full;
  if (!native.starts_with('/')) {
    full = currentDirectory();
    if (full.empty()) return full;
    if (full == "/") full.clear();
  }
  appendComponents(full, native);
  if (full.empty() || native.ends_with('/')) full += '/';
  return full;
}

DWORD pathError(int error, const std::string& nativePath) {
  switch (error) {
    case ENOENT: {
      // The last component is missing, or one before it.
      const std::size_t name = nativePath.find_last_not_of('/');
      const std::size_t separator = nativePath.rfind('/', name);
      const bool hasFolder =
          separator == std::string::npos || isDirectory(nativePath.substr(0, separator + 1));
      return hasFolder ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
    }
    case ENOTDIR:
      return ERROR_PATH_NOT_FOUND;
    case EACCES:
    case EPERM:
      return ERROR_ACCESS_DENIED;
    case ENAMETOOLONG:
      return ERROR_FILENAME_EXCED_RANGE;
    case EMFILE:
    case ENFILE:
      return ERROR_TOO_MANY_OPEN_FILES;
    case ENOMEM:
      return ERROR_NOT_ENOUGH_MEMORY;
    default:
      return ERROR_GEN_FAILURE;
  }
}

bool hasReservedCharacter(std::string_view path) {
  return path.find_first_of("<>\"|?*") != std::string_view::npos;
}

}  // namespace tolvanix::winapi
