// Driver installation by hardware ID: from the INF files of the current directory, by way of the
// helper program, for a device that is present.
#pragma once

#include <cstdint>

#include "install/ProgressLine.h"

namespace tolvanix {

// Returns a DeviceStatus. Of the hardware ID (may be null) what comes before "&REV" counts. A null
// INF name means every INF file, in the platform's order: the first that yields an installation, or
// when `checkOnly` is not 0 a device that is present, ends the search; else the last one's status
// counts. Throws nothing: when memory runs out, the status is kDeviceOutOfMemory.
std::int32_t DriverUpdate(const char* givenId, const char* infName, int checkOnly,
                          const DeviceCount& count = {});

// The same from one INF file, given by its full path; kDeviceInstalledRestart here.
std::int32_t Win2kInstall(const char* infPath, const char* hardwareId, int checkOnly,
                          const DeviceCount& count = {});

}  // namespace tolvanix
