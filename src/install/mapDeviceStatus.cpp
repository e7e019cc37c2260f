// What the result document says of a driver installation.
#include "app/KivWrapper.h"
#include "app/Status.h"
#include "install/DeviceStatus.h"

namespace tolvanix {

int KivWrapper::mapDeviceStatus(std::int32_t deviceStatus) {
  switch (deviceStatus) {
    case kDeviceInstalled:
    case kDeviceRestartRequired:
      return kSuccess;
    case kDeviceNotOnSystem:
      return kNoMatchingDevice;
    case kDeviceNoInfFiles:
      return kNoInfFiles;
    case kDeviceNamedInfNotFound:
      return kNamedInfNotFound;
    case kDeviceNullHardwareId:
      return kNullHardwareId;
    case kDeviceCheckFound:
      return kCheckedIdFound;
    case kDeviceCheckNotFound:
      return kCheckedIdNotFound;
    case kDeviceIdInNoInf:
      return kIdInNoInf;
    case kDeviceInfNotOpened:
      return kInfNotOpened;
    case kDeviceNoIdForInstall:
      return kNullHardwareIdForInstall;
    case kDeviceHelperFailed:
      return kHelperFailed;
    case kDeviceNotPresent:
      return kNoExistingDevice;
    default:
      return kUpdateFailed;
  }
}

}  // namespace tolvanix
