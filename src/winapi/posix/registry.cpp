// The registry of the presented machine, below HKEY_LOCAL_MACHINE and for reading.
#include <algorithm>
#include <optional>
#include <string>

#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/HandleTable.h"
#include "winapi/posix/machine/PresentedMachine.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::winapi::HandleTable;
using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::presentedMachine;
using tolvanix::winapi::RegistryValue;

// An open key is its path.
HandleTable<std::string, 0x4B>& openKeys() {
  static HandleTable<std::string, 0x4B> table;
  return table;
}

LSTATUS status(DWORD code) {
  return static_cast<LSTATUS>(code);
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY key, const char* subKey, DWORD options, REGSAM access,
                      HKEY* result) try {
  if (key != HKEY_LOCAL_MACHINE) return status(ERROR_INVALID_HANDLE);
  if (subKey == nullptr || options != 0 || result == nullptr)
    return status(ERROR_INVALID_PARAMETER);
  if (access != KEY_QUERY_VALUE) return status(ERROR_ACCESS_DENIED);
  if (!presentedMachine().hasKey(subKey)) return status(ERROR_FILE_NOT_FOUND);
  *result = openKeys().open(subKey);
  return status(ERROR_SUCCESS);
} catch (const std::bad_alloc&) {
  return outOfMemory(status(ERROR_NOT_ENOUGH_MEMORY));
}

// NOLINTNEXTLINE(readability-non-const-parameter): the published signature
LSTATUS RegQueryValueExA(HKEY key, const char* valueName, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size) try {
  const std::string* const path = openKeys().find(key);
  if (path == nullptr) return status(ERROR_INVALID_HANDLE);
  if (reserved != nullptr || (data != nullptr && size == nullptr)) {
    return status(ERROR_INVALID_PARAMETER);
  }
  const std::optional<RegistryValue> value =
      presentedMachine().value(*path, valueName == nullptr ? "" : valueName);
  if (!value) return status(ERROR_FILE_NOT_FOUND);
  if (type != nullptr) *type = value->type;
  if (size == nullptr) return status(ERROR_SUCCESS);
  const DWORD room = *size;
  *size = static_cast<DWORD>(value->data.size());
  if (data == nullptr) return status(ERROR_SUCCESS);
  if (value->data.size() > room) return status(ERROR_MORE_DATA);
  BYTE* const end = std::copy(value->data.begin(), value->data.end(), data);
  // A text that was stored without its zero gets one where there is room; it does not count.
  const bool isText = value->type == REG_SZ || value->type == REG_EXPAND_SZ;
  if (isText && value->data.size() < room && !value->data.ends_with('\0')) *end = 0;
  return status(ERROR_SUCCESS);
} catch (const std::bad_alloc&) {
  return outOfMemory(status(ERROR_NOT_ENOUGH_MEMORY));
}

LSTATUS RegCloseKey(HKEY key) {
  return status(openKeys().close(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
}
