// Device information sets of the presented machine.
#include <algorithm>
#include <optional>

#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/HandleTable.h"
#include "winapi/posix/machine/PresentedMachine.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::winapi::fail;
using tolvanix::winapi::HandleTable;
using tolvanix::winapi::Machine;
using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::presentedMachine;
using tolvanix::winapi::RegistryValue;

struct DeviceSet {
  const Machine* machine;  // null for a set made empty
  std::size_t deviceCount() const { return machine == nullptr ? 0 : machine->deviceCount(); }
};

HandleTable<DeviceSet, 0x44>& deviceSets() {
  static HandleTable<DeviceSet, 0x44> table;
  return table;
}

HDEVINFO noSet(DWORD code) {
  return fail(code, INVALID_HANDLE_VALUE);
}

}  // namespace

HDEVINFO SetupDiGetClassDevsA(const GUID* classGuid, const char* enumerator, HWND parent,
                              DWORD flags) {
  return SetupDiGetClassDevsExA(classGuid, enumerator, parent, flags, nullptr, nullptr, nullptr);
}

// All present devices is the one selection there is, of this computer, in a new set.
HDEVINFO SetupDiGetClassDevsExA(const GUID* classGuid, const char* enumerator, HWND parent,
                                DWORD flags, HDEVINFO existing, const char* machineName,
                                void* reserved) try {
  if (machineName != nullptr) return noSet(ERROR_INVALID_MACHINENAME);
  if (flags != (DIGCF_PRESENT | DIGCF_ALLCLASSES) || reserved != nullptr) {
    return noSet(ERROR_INVALID_PARAMETER);
  }
  if (classGuid != nullptr || enumerator != nullptr || parent != nullptr || existing != nullptr) {
    return noSet(ERROR_CALL_NOT_IMPLEMENTED);
  }
  return deviceSets().open({&presentedMachine()});
} catch (const std::bad_alloc&) {
  return outOfMemory(INVALID_HANDLE_VALUE);
}

HDEVINFO SetupDiCreateDeviceInfoList(const GUID* /*classGuid: nothing is ever added*/,
                                     HWND parent) try {
  if (parent != nullptr) return noSet(ERROR_CALL_NOT_IMPLEMENTED);
  return deviceSets().open({nullptr});
} catch (const std::bad_alloc&) {
  return outOfMemory(INVALID_HANDLE_VALUE);
}

// Only DevInst is filled: the number of the device, from 1.
BOOL SetupDiEnumDeviceInfo(HDEVINFO set, DWORD index, SP_DEVINFO_DATA* data) {
  const DeviceSet* const found = deviceSets().find(set);
  if (found == nullptr) return fail(ERROR_INVALID_HANDLE);
  if (data == nullptr) return fail(ERROR_INVALID_PARAMETER);
  if (data->cbSize != sizeof(SP_DEVINFO_DATA)) return fail(ERROR_INVALID_USER_BUFFER);
  if (index >= found->deviceCount()) return fail(ERROR_NO_MORE_ITEMS);
  data->ClassGuid = {};
  data->DevInst = index + 1;
  data->Reserved = 0;
  return TRUE;
}

BOOL SetupDiGetDeviceRegistryPropertyA(HDEVINFO set, SP_DEVINFO_DATA* data, DWORD property,
                                       DWORD* type, BYTE* buffer, DWORD size,
                                       DWORD* requiredSize) try {
  const DeviceSet* const found = deviceSets().find(set);
  if (found == nullptr) return fail(ERROR_INVALID_HANDLE);
  if (data == nullptr || (buffer == nullptr && size != 0)) return fail(ERROR_INVALID_PARAMETER);
  if (data->cbSize != sizeof(SP_DEVINFO_DATA)) return fail(ERROR_INVALID_USER_BUFFER);
  if (data->DevInst == 0 || data->DevInst > found->deviceCount()) {
    return fail(ERROR_INVALID_PARAMETER);
  }
  const std::optional<RegistryValue> value =
      found->machine->deviceProperty(data->DevInst - 1, property);
  if (!value) return fail(ERROR_INVALID_DATA);
  if (type != nullptr) *type = value->type;
  if (requiredSize != nullptr) *requiredSize = static_cast<DWORD>(value->data.size());
  if (value->data.size() > size) return fail(ERROR_INSUFFICIENT_BUFFER);
  std::copy(value->data.begin(), value->data.end(), buffer);
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

// No set holds a list of drivers, so none is left to release.
BOOL SetupDiDestroyDriverInfoList(HDEVINFO set, SP_DEVINFO_DATA* data, DWORD driverType) {
  if (deviceSets().find(set) == nullptr) return fail(ERROR_INVALID_HANDLE);
  if (data == nullptr || driverType != SPDIT_COMPATDRIVER) return fail(ERROR_INVALID_PARAMETER);
  return TRUE;
}

BOOL SetupDiDestroyDeviceInfoList(HDEVINFO set) {
  return deviceSets().close(set) ? TRUE : fail(ERROR_INVALID_HANDLE);
}
