#include "install/DriverUpdate.h"

#include <new>
#include <string>
#include <string_view>

#include "install/CDevInfoSet.h"
#include "install/CInf.h"
#include "install/DeviceStatus.h"
#include "install/FileEnum.h"
#include "log/DebugWriter.h"

namespace tolvanix {

std::int32_t DriverUpdate(const char* givenId, const char* infName, int checkOnly,
                          const DeviceCount& count) try {
  if (givenId == nullptr) return kDeviceNullHardwareId;
  const std::string_view given = givenId;
  const std::string hardwareId(given.substr(0, given.find("&REV")));
  TRACE_STEP("DriverUpdate: Entered function.\n");
  TRACE_STEP("DriverUpdate: Hardware ID = %s\n", hardwareId.c_str());
  TRACE_STEP("DriverUpdate: check INF   = %d\n", checkOnly);
  TRACE_STEP("DriverUpdate: INF file    = %s\n", infName != nullptr ? infName : "<NULL>");

  FileEnum files(infName != nullptr ? infName : "*.inf");
  if (!files.FindFirst()) {
    if (infName != nullptr) {
      TRACE_STEP("DriverUpdate: INF file was not found = %s\n", infName);
      return kDeviceNamedInfNotFound;
    }
    TRACE_STEP("DriverUpdate: No INF files found.\n");
    return kDeviceNoInfFiles;
  }
  std::int32_t status = kDeviceInstalled;
  do {
    const std::string path = files.GetFullPath();
    TRACE_STEP("DriverUpdate: Found INF file = %s\n", path.c_str());
    status = Win2kInstall(path.c_str(), hardwareId.c_str(), checkOnly, count);
    TRACE_STEP("DriverUpdate: status from Win2kInstall() = %d\n", status);
    switch (status) {
      case kDeviceCheckFound:
        TRACE_STEP("DriverUpdate: Found hardware ID in INF file\n");
        return status;
      case kDeviceInstalledRestart:
        return kDeviceRestartRequired;
      case kDeviceInstalled:
        return status;
      default:
        break;
    }
  } while (files.FindNext());
  if (checkOnly != 0 && status == kDeviceCheckNotFound) {
    TRACE_STEP("DriverUpdate: Did not find hardware ID in any INF files.\n");
  }
  return status;
} catch (const std::bad_alloc&) {
  return kDeviceOutOfMemory;
}

std::int32_t Win2kInstall(const char* infPath, const char* hardwareId, int checkOnly,
                          const DeviceCount& count) try {
  TRACE_STEP("Win2kInstall: Entered function.\n");
  CInf inf;
  if (inf.Open(infPath, 0) != ERROR_SUCCESS) {
    TRACE_STEP("Win2kInstall: Error: Unable to open INF file: %s\n", infPath);
    return kDeviceInfNotOpened;
  }
  if (hardwareId == nullptr) {
    TRACE_STEP("Win2kInstall: Error: Hardware ID pointer is NULL.\n");
    return kDeviceNoIdForInstall;
  }
  inf.setHardwareId(hardwareId);
  if (inf.EnumManufacturers() != ERROR_SUCCESS) {
    TRACE_STEP("Win2kInstall: Hardware ID not found in INF file.\n");
    return checkOnly != 0 ? kDeviceCheckNotFound : kDeviceIdInNoInf;
  }

  CDevInfoSet devices;
  devices.Create(inf);
  // No list of devices counts as no device: an installation must rest on one that was seen, and a
  // check must not report what nothing has shown.
  if (devices.FindExistingDevice(inf.getHardwareId().c_str()) != CDevInfoSet::kFound) {
    TRACE_STEP("Win2kInstall: Could not find existing device.\n");
    return kDeviceNotPresent;
  }
  if (checkOnly != 0) return kDeviceCheckFound;

  const int status = devices.UpdateDriver(count);
  TRACE_STEP("Win2kInstall: status from UpdateDriver() = %d\n", status);
  if (status != 0) {
    TRACE_STEP("Win2kInstall: error status from UpdateDriver() = %d\n", status);
    return kDeviceHelperFailed;
  }
  return devices.getRebootRequired() ? kDeviceInstalledRestart : kDeviceInstalled;
} catch (const std::bad_alloc&) {
  return kDeviceOutOfMemory;
}

}  // namespace tolvanix
