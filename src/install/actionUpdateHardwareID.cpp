// The command -uhid: installs the driver for one hardware ID.
#include "app/KivWrapper.h"
#include "app/Status.h"
#include "install/DeviceStatus.h"
#include "install/DriverUpdate.h"

namespace tolvanix {

int KivWrapper::actionUpdateHardwareID() {
  TRACE_STEP("actionUpdateHardwareID: Entered function.\n");
  xmlWriter->writeExecutionStart();
  const std::int32_t deviceStatus =
      DriverUpdate(parser->getHardwareID(), parser->getINFFileName(), parser->getCheckOnly());
  TRACE_STEP("actionUpdateHardwareID: deviceStatus from DriverUpdate() = %d\n", deviceStatus);
  rebootRequired = deviceStatus == kDeviceRestartRequired;
  const int status = mapDeviceStatus(deviceStatus);
  TRACE_STEP("actionUpdateHardwareID: mappedDeviceStatus = %d\n", status);
  if (status == kSuccess) {
    xmlWriter->writeSuccessStatus();
  } else {
    xmlWriter->writeFailureStatus(status);
  }
  xmlWriter->writeExecutionEnd(rebootRequired);
  return status;
}

}  // namespace tolvanix
