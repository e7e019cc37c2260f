#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/Ascii.h"
#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/HandleTable.h"
#include "winapi/posix/base/Paths.h"
#include "winapi/posix/base/Report.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::toUpper;
using tolvanix::winapi::fail;
using tolvanix::winapi::fromNativePath;
using tolvanix::winapi::fullNativePath;
using tolvanix::winapi::hasReservedCharacter;
using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::pathError;

using FileStatus = struct stat;

// Copies text that fits with its terminating zero and returns its length; otherwise returns the
// size that it takes.
DWORD answerText(const std::string& text, DWORD size, char* buffer) {
  if (text.size() >= size) return static_cast<DWORD>(text.size() + 1);
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return static_cast<DWORD>(text.size());
}

std::size_t nextCharacter(std::string_view utf8, std::size_t position) {
  do {
    ++position;
  } while (position < utf8.size() && (utf8[position] & 0xC0) == 0x80);
  return position;
}

// Matches by the rules that searches have kept from DOS: "*.*" is "*"; '?' also matches nothing
// where the name ends or has a '.'; a '.' before '*' or '?' also matches the end of the name; the
// star of a final "*." does not reach over the name's last '.'. Works on the set of positions in
// the name that the pattern up to here can end at, so that no pattern takes long.
bool matchesPattern(std::string_view pattern, std::string_view name) {
  if (pattern == "*.*") pattern = "*";
  const std::size_t end = name.size();
  std::vector<bool> reached(end + 1);
  reached[0] = true;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const std::string_view rest = pattern.substr(i + 1);
    const bool beforeWildcard = rest.starts_with('*') || rest.starts_with('?');
    std::vector<bool> next(end + 1);
    for (std::size_t at = 0; at <= end; ++at) {
      if (!reached[at]) continue;
      switch (pattern[i]) {
        case '*': {
          const std::size_t dot = rest == "." ? name.rfind('.') : std::string_view::npos;
          const std::size_t stop = dot != std::string_view::npos && at <= dot ? dot : end;
          std::fill(next.begin() + static_cast<std::ptrdiff_t>(at),
                    next.begin() + static_cast<std::ptrdiff_t>(stop) + 1, true);
          break;
        }
        case '?':
          next[at == end || name[at] == '.' ? at : nextCharacter(name, at)] = true;
          break;
        default:
          if (at == end) {
            if (pattern[i] == '.' && beforeWildcard) next[at] = true;
          } else if (toUpper(name[at]) == toUpper(pattern[i])) {
            next[at + 1] = true;
          }
      }
    }
    // The '.' of a final "*." has done its work.
    if (pattern[i] == '*' && rest == ".") ++i;
    reached = std::move(next);
  }
  return reached[end];
}

DWORD attributesOf(const FileStatus& status) {
  DWORD attributes = 0;
  if (S_ISDIR(status.st_mode)) attributes |= FILE_ATTRIBUTE_DIRECTORY;
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) attributes |= FILE_ATTRIBUTE_READONLY;
  return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
}

WIN32_FIND_DATAA findData(const FileStatus& status, const std::string& name) {
  WIN32_FIND_DATAA data{};
  data.dwFileAttributes = attributesOf(status);
  const auto size = S_ISDIR(status.st_mode) ? 0 : static_cast<DWORDLONG>(status.st_size);
  data.nFileSizeHigh = static_cast<DWORD>(size >> 32);
  data.nFileSizeLow = static_cast<DWORD>(size);
  std::memcpy(data.cFileName, name.c_str(), name.size() + 1);
  return data;
}

// A search gives what was there when it began, also what has gone since.
class Search {
 public:
  // The folder has a separator at its end. Links to nowhere are passed over.
  Search(const std::string& folder, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      FileStatus status{};
      if (stat((folder + name).c_str(), &status) == 0) found.push_back(findData(status, name));
    }
  }

  // False at the end.
  bool next(WIN32_FIND_DATAA& data) {
    if (position == found.size()) return false;
    data = found[position++];
    return true;
  }

 private:
  std::vector<WIN32_FIND_DATAA> found;
  std::size_t position = 0;
};

tolvanix::winapi::HandleTable<Search, 0x46>& searches() {
  static tolvanix::winapi::HandleTable<Search, 0x46> table;
  return table;
}

// The folder's next entry; null at the end, and, with a report, where reading it fails.
const dirent* nextEntry(DIR* directory, const std::string& folder) {
  errno = 0;
  const dirent* const entry = readdir(directory);
  if (entry == nullptr && errno != 0) {
    tolvanix::winapi::report(folder + ": " + std::strerror(errno));
  }
  return entry;
}

// The names that match, in order; none, with errno, when the folder cannot be opened.
std::optional<std::vector<std::string>> matchingNames(const std::string& folder,
                                                      const std::string& pattern) {
  const std::unique_ptr<DIR, decltype([](DIR* open) { closedir(open); })> directory(
      opendir(folder.c_str()));
  if (!directory) return std::nullopt;
  std::vector<std::pair<std::string, std::string>> matches;  // upper-cased, as it is
  while (const dirent* const entry = nextEntry(directory.get(), folder)) {
    std::string name = entry->d_name;
    // A name with '\' in it cannot be told to the program.
    if (name.size() >= MAX_PATH || name.find('\\') != std::string::npos) continue;
    if (matchesPattern(pattern, name)) {
      matches.emplace_back(toUpper(std::string_view(name)), std::move(name));
    }
  }
  std::sort(matches.begin(), matches.end());
  std::vector<std::string> names;
  names.reserve(matches.size());
  for (auto& match : matches) names.push_back(std::move(match.second));
  return names;
}

HANDLE failSearch(DWORD error) {
  return fail(error, INVALID_HANDLE_VALUE);
}

}  // namespace

DWORD GetCurrentDirectoryA(DWORD size, char* buffer) try {
  const std::string path = fullNativePath(".");
  if (path.empty()) {
    return fail(pathError(errno, "."), DWORD{0});
  }
  return answerText(fromNativePath(path), size, buffer);
} catch (const std::bad_alloc&) {
  return outOfMemory(DWORD{0});
}

BOOL SetCurrentDirectoryA(const char* path) try {
  if (path == nullptr || *path == '\0' || hasReservedCharacter(path)) {
    return fail(ERROR_INVALID_NAME);
  }
  std::string native = fullNativePath(path);
  if (!native.ends_with('/')) native += '/';
  // The documented limit counts the separator at the end and the terminating zero.
  if (native.size() >= MAX_PATH) {
    return fail(ERROR_FILENAME_EXCED_RANGE);
  }
  if (chdir(native.c_str()) == 0) return TRUE;
  const int error = errno;
  native.pop_back();
  FileStatus status{};
  const bool isFile = error == ENOTDIR && stat(native.c_str(), &status) == 0;
  SetLastError(isFile ? ERROR_DIRECTORY : pathError(error, native));
  return FALSE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

DWORD GetFullPathNameA(const char* fileName, DWORD size, char* buffer, char** filePart) try {
  if (fileName == nullptr || *fileName == '\0') {
    return fail(ERROR_INVALID_NAME, DWORD{0});
  }
  const std::string native = fullNativePath(fileName);
  if (native.empty()) {
    return fail(pathError(errno, fileName), DWORD{0});
  }
  const DWORD length = answerText(fromNativePath(native), size, buffer);
  if (filePart != nullptr && length < size) {
    *filePart = native.ends_with('/') ? nullptr : buffer + native.rfind('/') + 1;
  }
  return length;
} catch (const std::bad_alloc&) {
  return outOfMemory(DWORD{0});
}

DWORD GetFileAttributesA(const char* fileName) try {
  if (fileName == nullptr || *fileName == '\0') {
    return fail(ERROR_PATH_NOT_FOUND, INVALID_FILE_ATTRIBUTES);
  }
  const std::string native = fullNativePath(fileName);
  FileStatus status{};
  if (stat(native.c_str(), &status) == 0) return attributesOf(status);
  return fail(pathError(errno, native), INVALID_FILE_ATTRIBUTES);
} catch (const std::bad_alloc&) {
  return outOfMemory(INVALID_FILE_ATTRIBUTES);
}

HANDLE FindFirstFileA(const char* fileName, WIN32_FIND_DATAA* data) try {
  if (data == nullptr) return failSearch(ERROR_INVALID_PARAMETER);
  if (fileName == nullptr || *fileName == '\0') return failSearch(ERROR_PATH_NOT_FOUND);
  const std::string_view given = fileName;
  if (hasReservedCharacter(given.substr(0, given.find_last_of("\\/") + 1))) {
    return failSearch(ERROR_INVALID_NAME);
  }
  const std::string native = fullNativePath(given);
  const std::size_t nameStart = native.rfind('/') + 1;
  const std::string folder = native.substr(0, nameStart);
  const std::string pattern = native.substr(nameStart);

  std::vector<std::string> names;
  FileStatus status{};
  const bool isPattern = pattern.find_first_of("*?") != std::string::npos;
  if (!isPattern && !pattern.empty() && pattern.size() < MAX_PATH &&
      stat(native.c_str(), &status) == 0) {
    // Names that differ from it in case alone must not come into its place.
    names.push_back(pattern);
  } else {
    auto matches = matchingNames(folder, pattern);
    if (!matches) {
      const int error = errno;
      const bool isFile =
          error == ENOTDIR && stat(folder.substr(0, nameStart - 1).c_str(), &status) == 0;
      if (isFile) return failSearch(ERROR_DIRECTORY);
      return failSearch(error == ENOENT ? ERROR_PATH_NOT_FOUND : pathError(error, folder));
    }
    names = std::move(*matches);
  }

  Search search(folder, names);
  if (!search.next(*data)) return failSearch(ERROR_FILE_NOT_FOUND);
  return searches().open(std::move(search));
} catch (const std::bad_alloc&) {
  return outOfMemory(INVALID_HANDLE_VALUE);
}

BOOL FindNextFileA(HANDLE find, WIN32_FIND_DATAA* data) try {
  Search* const search = searches().find(find);
  if (search != nullptr && search->next(*data)) return TRUE;
  SetLastError(search != nullptr ? ERROR_NO_MORE_FILES : ERROR_INVALID_HANDLE);
  return FALSE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

BOOL FindClose(HANDLE find) {
  if (searches().close(find)) return TRUE;
  SetLastError(ERROR_INVALID_HANDLE);
  return FALSE;
}
