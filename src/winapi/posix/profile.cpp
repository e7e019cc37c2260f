#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/Paths.h"
#include "winapi/posix/base/ProfileText.h"
#include "winapi/posix/base/TextFile.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::ProfileText;

// The profile that was read last is kept: programs ask for one value after another, and a file of
// 8,000 sections that is read for each takes seconds.
struct KeptProfile {
  KeptProfile(const struct stat& status, const timespec& now, std::string text)
      : device(status.st_dev), file(status.st_ino), seen(now), profile(std::move(text)) {}

  dev_t device;
  ino_t file;
  timespec seen;  // by the clock that stamps files, before it was read
  ProfileText profile;

  // Written in the same tick of that clock counts as written since.
  bool isCurrent(const struct stat& now) const {
    return now.st_dev == device && now.st_ino == file &&
           std::tie(now.st_ctim.tv_sec, now.st_ctim.tv_nsec) < std::tie(seen.tv_sec, seen.tv_nsec);
  }
};
std::unique_ptr<KeptProfile> kept;

// The profile of that name; null, with the error, when it cannot be read. A name without a folder
// means a file of the system's own folder, and this system has none.
const ProfileText* readProfile(const char* fileName, DWORD& error) {
  error = ERROR_FILE_NOT_FOUND;
  if (fileName == nullptr || std::strpbrk(fileName, "\\/") == nullptr) return nullptr;
  timespec now{};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  struct stat status {};
  const bool exists = stat(tolvanix::winapi::toNativePath(fileName).c_str(), &status) == 0;
  error = ERROR_SUCCESS;
  if (exists && kept != nullptr && kept->isCurrent(status)) return &kept->profile;
  std::string text;
  error = tolvanix::winapi::readTextFile(fileName, text, tolvanix::winapi::BigEndian::kRead);
  if (error != ERROR_SUCCESS) return nullptr;
  kept = std::make_unique<KeptProfile>(status, now, std::move(text));
  return &kept->profile;
}

}  // namespace

DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName) try {
  if (buffer == nullptr || size < 2) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  DWORD error = ERROR_SUCCESS;
  const ProfileText* const profile = readProfile(fileName, error);
  const std::string names = profile != nullptr ? profile->sectionNames() : std::string();
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
  DWORD error = ERROR_SUCCESS;
  const ProfileText* const profile = readProfile(fileName, error);
  std::optional<std::string_view> value;
  if (profile != nullptr) {
    value = profile->value(section, key);
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
