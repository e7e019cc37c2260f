#include <strings.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/ProfileText.h"
#include "winapi/posix/base/TextFile.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::winapi::outOfMemory;

// A name without a folder means a file of the system's own folder, and this system has none.
DWORD readProfile(const char* fileName, std::string& text) {
  if (fileName == nullptr || std::strpbrk(fileName, "\\/") == nullptr) return ERROR_FILE_NOT_FOUND;
  return tolvanix::winapi::readTextFile(fileName, text, tolvanix::winapi::BigEndian::kRead);
}

}  // namespace

DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName) try {
  if (buffer == nullptr || size < 2) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  std::string text;
  const DWORD error = readProfile(fileName, text);
  const std::string names =
      error == ERROR_SUCCESS ? tolvanix::winapi::profileSectionNames(text) : std::string();
  const bool fits = names.size() < size;
  const std::size_t length = fits ? names.size() : size - 2;
  char* const end = std::copy_n(names.data(), length, buffer);
  std::fill_n(end, fits && !names.empty() ? 1 : 2, '\0');
  SetLastError(error);
  return static_cast<DWORD>(length);
} catch (const std::bad_alloc&) {
  std::fill_n(buffer, 2, '\0');
  return outOfMemory(DWORD{0});
}

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue,
                               char* buffer, DWORD size, const char* fileName) try {
  if (section == nullptr || key == nullptr || buffer == nullptr || size == 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  std::string text;
  DWORD error = readProfile(fileName, text);
  std::optional<std::string_view> value;
  if (error == ERROR_SUCCESS) {
    value = tolvanix::winapi::profileValue(text, section, key);
    if (value) value = value->substr(0, value->find('\0'));
    if (!value) error = ERROR_FILE_NOT_FOUND;
  }
  if (!value) {
    const std::string_view given = defaultValue != nullptr ? defaultValue : "";
    value = given.substr(0, given.find_last_not_of(' ') + 1);
  }
  const std::size_t length = std::min<std::size_t>(value->size(), size - 1);
  value->copy(buffer, length);
  buffer[length] = '\0';
  SetLastError(error);
  return static_cast<DWORD>(length);
} catch (const std::bad_alloc&) {
  *buffer = '\0';
  return outOfMemory(DWORD{0});
}

int _mbsicmp(const unsigned char* left, const unsigned char* right) {
  return strcasecmp(reinterpret_cast<const char*>(left), reinterpret_cast<const char*>(right));
}
