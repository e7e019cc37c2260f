// The execution of an update: the driver of every listed device, and one result for each.
#include <memory>
#include <new>
#include <string>

#include "app/KivWrapper.h"
#include "app/SPException.h"
#include "app/Status.h"
#include "install/DeviceStatus.h"
#include "install/DriverUpdate.h"
#include "inventory/SPXMLData.h"
#include "inventory/SPXMLDevice.h"
#include "text/Conversion.h"
#include "text/HardwareId.h"
#include "update/HwIDList.h"
#include "xml/SPXMLObject.h"

namespace tolvanix {

namespace {

std::unique_ptr<HwIDList> createHwIDList() {
  std::unique_ptr<HwIDList> list(new (std::nothrow) HwIDList);
  if (!list) {
    TRACE_ERROR("PerformExecution: Error: Unable to create HwIDList object.\n");
    throw SPException(kHwIDListNotCreated, "");
  }
  return list;
}

// An identifier that the element does not give counts as FFFFFFFF.
unsigned identifier(std::int32_t number) {
  return static_cast<unsigned>(number);
}

std::string hardwareIdOf(const SPXMLDevice& device) {
  return pciHardwareId({identifier(device.getVendorID()), identifier(device.getDeviceID()),
                        identifier(device.getSubDeviceID()), identifier(device.getSubVendorID())});
}

void traceMatch(const SPXMLDevice& device) {
  if (!debugLevelAtLeast(kTraceSteps)) return;
  debugTrace("PerformExecution: Checking for a device match.\n");
  debugTrace("PerformExecution: VendorID    = 0x%4.4x\n", identifier(device.getVendorID()));
  debugTrace("PerformExecution: DeviceID    = 0x%4.4x\n", identifier(device.getDeviceID()));
  debugTrace("PerformExecution: SubVendorID = 0x%4.4x\n", identifier(device.getSubVendorID()));
  debugTrace("PerformExecution: SubDeviceID = 0x%4.4x\n", identifier(device.getSubDeviceID()));
  debugTrace("PerformExecution: Found a device match.\n");
}

// Installs the driver for an ID that was not handled yet; an ID that was keeps its outcome.
std::int32_t updateOnce(const std::string& hardwareId, HwIDList& handled, const char* infFileName,
                        int checkOnly, const DeviceCount& count) {
  const HwIDNode* const node = handled.findHwIDNode(hardwareId);
  if (node != nullptr) {
    TRACE_STEP("PerformExecution: Duplicate hardware ID found = %s\n", hardwareId.c_str());
    TRACE_STEP("PerformExecution: deviceStatus = %d\n", node->getDeviceStatus());
    return node->getDeviceStatus();
  }
  const std::int32_t deviceStatus = DriverUpdate(hardwareId.c_str(), infFileName, checkOnly, count);
  TRACE_STEP("PerformExecution: deviceStatus from DriverUpdate() = %d\n", deviceStatus);
  if (handled.AddHwIDNode(hardwareId, deviceStatus) == nullptr) {
    TRACE_ERROR("PerformExecution: Error: Failed to add new hardware ID node to the list.\n");
    throw SPException(kHwIDNodeNotAdded, "");
  }
  return deviceStatus;
}

// Text for the writer, which takes valid XML character data.
std::string characterData(const SPUString& text) {
  return toXmlUtf8(SPXMLObject::escapeText(text));
}

}  // namespace

int KivWrapper::PerformExecution(const char* infFileName, int checkOnly) {
  int overallStatus = kSuccess;
  try {
    TRACE_STEP("PerformExecution: Entered function.\n");
    const SPUString validation(validationXML);
    TRACE_STEP("PerformExecution: About to create spXML object.\n");
    const SPXMLData document(validation);
    const std::unique_ptr<HwIDList> handled = createHwIDList();
    xmlWriter->writeExecutionStart();
    DeviceCount count{0, static_cast<unsigned>(document.getDevices().size())};
    for (const SPXMLDevice& device : document.getDevices()) {
      traceMatch(device);
      const std::int32_t deviceStatus =
          updateOnce(hardwareIdOf(device), *handled, infFileName, checkOnly, count);
      ++count.done;
      if (deviceStatus == kDeviceRestartRequired) rebootRequired = true;
      const int messageId = mapDeviceStatus(deviceStatus);
      TRACE_STEP("PerformExecution: mappedDeviceStatus = %d\n", messageId);
      recordDeviceResult(device, messageId);
      // The first failing device decides the run's status.
      if (overallStatus == kSuccess) overallStatus = messageId;
    }
    TRACE_STEP("UpdateValidatedDevices: reboot = %d\n", rebootRequired ? 1 : 0);
  } catch (const SPException& e) {
    const int number = static_cast<int>(e.getErrorNum());
    TRACE_STEP("PerformExecution: Caught exception. e.getErrorNum() = %d\n", number);
    if (number == kHwIDListNotCreated || number == kHwIDNodeNotAdded) overallStatus = number;
    if (overallStatus == kSuccess) overallStatus = kUpdateFailed;
    writeExecutionFailure(overallStatus);
    return overallStatus;
  }
  xmlWriter->writeExecutionEnd(rebootRequired);
  return overallStatus;
}

void KivWrapper::recordDeviceResult(const SPXMLDevice& device, int messageId) {
  XMLWriter::DeviceResult result = {};
  result.vendorID = identifier(device.getVendorID());
  result.deviceID = identifier(device.getDeviceID());
  result.subDeviceID = identifier(device.getSubDeviceID());
  result.subVendorID = identifier(device.getSubVendorID());
  result.bus = device.getBus();
  result.device = device.getDevice();
  result.function = device.getFunction();
  result.display = characterData(device.getDisplay());
  if (!device.getApplications().empty()) {
    const SPXMLApplication& application = device.getApplications().front();
    result.componentType = characterData(application.getComponentType());
    result.version = characterData(application.getVersion());
    result.applicationDisplay = characterData(application.getDisplay());
    result.packageVersion = characterData(application.getPackageVersion());
  }
  result.messageId = messageId;
  xmlWriter->writeDeviceResult(result);
}

}  // namespace tolvanix
