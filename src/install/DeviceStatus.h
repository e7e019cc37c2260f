// The outcome of one driver installation, as DriverUpdate returns it and its callers turn it into
// a status (KivWrapper::mapDeviceStatus). Other values exist and count as unspecified failures.
#pragma once

namespace tolvanix {

enum DeviceStatus : int {
  kDeviceNotOnSystem = -7,
  kDeviceNoInfFiles = -6,
  kDeviceNamedInfNotFound = -5,
  kDeviceNullHardwareId = -4,
  kDeviceRestartRequired = -2,  // installed
  kDeviceOutOfMemory = -1,      // an unspecified failure
  kDeviceInstalled = 0,
  kDeviceInstalledRestart = 1,  // one INF file's result; DriverUpdate returns -2 for it
  kDeviceCheckFound = 3,
  kDeviceCheckNotFound = 4,
  kDeviceIdInNoInf = 5,
  kDeviceInfNotOpened = 6,
  kDeviceNoIdForInstall = 7,
  kDeviceHelperFailed = 8,
  kDeviceNotPresent = 9,
};

}  // namespace tolvanix
