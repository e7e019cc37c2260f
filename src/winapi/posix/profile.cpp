#include <strings.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "winapi/posix/TextFile.h"
#include "winapi/winapi.h"

namespace {

constexpr char kBlanks[] = " \t";

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

// Takes the next line off the text, without blanks around it; nothing at the end.
std::optional<std::string_view> nextLine(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trim(line);
}

// The name of the section that the line begins, empty for every other line. What follows the last
// bracket is ignored.
std::string_view sectionName(std::string_view line) {
  const std::size_t end = line.rfind(']');
  if (!line.starts_with('[') || end == std::string_view::npos) return {};
  return trim(line.substr(1, end - 1));
}

std::string_view withoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// Looks into the first section of that name only.
std::optional<std::string_view> findValue(std::string_view text, std::string_view section,
                                          std::string_view key) {
  bool inside = false;
  while (const auto line = nextLine(text)) {
    if (const std::string_view name = sectionName(*line); !name.empty()) {
      if (inside) return std::nullopt;
      inside = equalIgnoringCase(name, section);
      continue;
    }
    const std::size_t equals = line->find('=');
    if (!inside || line->starts_with(';') || equals == std::string_view::npos) continue;
    if (equalIgnoringCase(trim(line->substr(0, equals)), key)) {
      return withoutQuotes(trim(line->substr(equals + 1)));
    }
  }
  return std::nullopt;
}

// A name without a folder means a file of the system's own folder, and this system has none.
DWORD readProfile(const char* fileName, std::string& text) {
  if (fileName == nullptr || std::strpbrk(fileName, "\\/") == nullptr) return ERROR_FILE_NOT_FOUND;
  return tolvanix::readTextFile(fileName, text);
}

}  // namespace

DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName) {
  if (buffer == nullptr || size < 2) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  std::string text;
  const DWORD error = readProfile(fileName, text);
  std::string names;
  std::string_view rest = text;
  while (error == ERROR_SUCCESS) {
    const auto line = nextLine(rest);
    if (!line) break;
    const std::string_view name = sectionName(*line);
    if (!name.empty()) names.append(name).push_back('\0');
  }
  const bool fits = names.size() < size;
  const std::size_t length = fits ? names.size() : size - 2;
  std::memcpy(buffer, names.data(), length);
  std::memset(buffer + length, '\0', fits && !names.empty() ? 1 : 2);
  SetLastError(error);
  return static_cast<DWORD>(length);
}

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue,
                               char* buffer, DWORD size, const char* fileName) {
  if (section == nullptr || key == nullptr || buffer == nullptr || size == 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  std::string text;
  DWORD error = readProfile(fileName, text);
  std::optional<std::string_view> value;
  if (error == ERROR_SUCCESS) {
    value = findValue(text, section, key);
    if (!value) error = ERROR_FILE_NOT_FOUND;
  }
  if (!value) {
    const std::string_view given = defaultValue != nullptr ? defaultValue : "";
    value = given.substr(0, given.find_last_not_of(' ') + 1);
  }
  const std::size_t length = std::min<std::size_t>(value->size(), size - 1);
  std::memcpy(buffer, value->data(), length);
  buffer[length] = '\0';
  SetLastError(error);
  return static_cast<DWORD>(length);
}

int _mbsicmp(const unsigned char* left, const unsigned char* right) {
  return strcasecmp(reinterpret_cast<const char*>(left), reinterpret_cast<const char*>(right));
}
