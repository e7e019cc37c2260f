#include "inventory/PciEnumeration.h"

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "inventory/DeviceTexts.h"
#include "winapi/ClassKeys.h"
#include "winapi/Owner.h"

namespace tolvanix {
namespace {

constexpr DWORD kFirstPropertySize = 1000;
constexpr std::size_t kKeyPathSize = 256;
constexpr DWORD kDriverVersionSize = 64;

struct DeviceList {
  DeviceList() = default;
  DeviceList(const DeviceList&) = delete;
  DeviceList& operator=(const DeviceList&) = delete;
  ~DeviceList() { FreeDeviceRecords(first); }

  DeviceRecord* first = nullptr;
  DeviceRecord* last = nullptr;
  std::unordered_set<std::u16string> identities;  // the seven numbers by which devices differ
};

// Appends the record unless the list has an equal one; then the record is freed.
void AppendUniqueDevice(DeviceList& list, std::unique_ptr<DeviceRecord> record) {
  const std::u16string identity = {record->vendorID,    record->deviceID, record->subDeviceID,
                                   record->subVendorID, record->bus,      record->device,
                                   record->function};
  if (!list.identities.insert(identity).second) return;
  DeviceRecord*& end = list.last == nullptr ? list.first : list.last->next;
  end = record.release();
  list.last = end;
}

template <std::size_t Size>
void copyText(std::string_view text, char (&field)[Size]) {
  field[text.copy(field, Size - 1)] = '\0';
}

// The property's text, ended by a zero; null when the device has none. The system gives the size
// that a text over 1000 bytes needs, and is asked once more.
std::unique_ptr<char[]> GetDeviceProperty(HDEVINFO set, SP_DEVINFO_DATA& device, DWORD property) {
  DWORD size = kFirstPropertySize;
  for (int attempt = 0; attempt < 2; ++attempt) {
    auto text = std::make_unique<char[]>(std::size_t{size} + 1);
    DWORD needed = 0;
    if (SetupDiGetDeviceRegistryPropertyA(set, &device, property, nullptr,
                                          reinterpret_cast<BYTE*>(text.get()), size, &needed)) {
      return text;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) break;
    size = needed;
  }
  return nullptr;
}

// The version that the driver's class key holds; the field stays empty when it cannot be read.
void readDriverVersion(std::string_view driverKey, DeviceRecord& record) {
  std::string path;
  path.reserve(kKeyPathSize);
  path.append(kClassKeys).append(driverKey);
  if (path.size() >= kKeyPathSize) return;
  HKEY opened = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &opened) !=
      static_cast<LSTATUS>(ERROR_SUCCESS)) {
    return;
  }
  const RegistryKeyOwner key(opened);
  char version[kDriverVersionSize + 1] = {};
  DWORD size = kDriverVersionSize;
  if (RegQueryValueExA(key.get(), "DriverVersion", nullptr, nullptr,
                       reinterpret_cast<BYTE*>(version),
                       &size) == static_cast<LSTATUS>(ERROR_SUCCESS)) {
    copyText(version, record.driverVersion);
  }
}

// True when the device is a PCI device; the record, zeroed before, then holds it.
bool ReadDeviceRecord(HDEVINFO set, SP_DEVINFO_DATA& device, DeviceRecord& record) {
  const auto hardwareIds = GetDeviceProperty(set, device, SPDRP_HARDWAREID);
  if (hardwareIds == nullptr) return false;
  const std::string_view hardwareId = hardwareIds.get();  // the first of the list
  if (!hardwareId.starts_with("PCI\\")) return false;
  copyText(hardwareId, record.hardwareID);
  ParseHardwareId(record);

  auto name = GetDeviceProperty(set, device, SPDRP_FRIENDLYNAME);
  if (name == nullptr) name = GetDeviceProperty(set, device, SPDRP_DEVICEDESC);
  copyText(name == nullptr ? "default" : name.get(), record.name);

  const auto location = GetDeviceProperty(set, device, SPDRP_LOCATION_INFORMATION);
  if (location != nullptr) ParseLocation(location.get(), record);

  const auto driverKey = GetDeviceProperty(set, device, SPDRP_DRIVER);
  if (driverKey != nullptr) readDriverVersion(driverKey.get(), record);
  return true;
}

DeviceRecord* readDevices(HDEVINFO set) {
  DeviceList list;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD index = 0; SetupDiEnumDeviceInfo(set, index, &device); ++index) {
    auto record = std::make_unique<DeviceRecord>();
    if (ReadDeviceRecord(set, device, *record)) AppendUniqueDevice(list, std::move(record));
  }
  return std::exchange(list.first, nullptr);
}

}  // namespace

DeviceRecord* EnumeratePciDevices(const char* machineName, const GUID* classGuid, DWORD flags) {
  const DeviceSetOwner set(
      SetupDiGetClassDevsExA(classGuid, nullptr, nullptr, flags, nullptr, machineName, nullptr));
  if (!set) return nullptr;
  try {
    return readDevices(set.get());
  } catch (const std::bad_alloc&) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  }
}

void FreeDeviceRecords(DeviceRecord* first) {
  while (first != nullptr) {
    const std::unique_ptr<DeviceRecord> record(first);
    first = record->next;
  }
}

}  // namespace tolvanix
