// The inventory of the computer as a document.
#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/KivWrapper.h"
#include "app/SPException.h"
#include "app/Status.h"
#include "inventory/CIniReader.h"
#include "inventory/PciEnumeration.h"
#include "inventory/SPXMLApplication.h"
#include "inventory/SPXMLData.h"
#include "inventory/SPXMLDevice.h"
#include "text/Ascii.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

struct DeviceRecordsDeleter {
  void operator()(DeviceRecord* first) const { FreeDeviceRecords(first); }
};
using DeviceRecords = std::unique_ptr<DeviceRecord, DeviceRecordsDeleter>;

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

// Without trailing white space, in lower case.
std::string normalizedName(std::string_view name) {
  return toLower(name.substr(0, name.find_last_not_of(kWhiteSpace) + 1));
}

// The device's name, followed by " Driver" unless it ends in that word already.
SPUString driverDisplayName(const char* deviceName) {
  const std::string normalized = normalizedName(deviceName);
  const bool namesDriver = normalized.ends_with("driver");
  TRACE_STEP("\"driver\" keyword %sfound at the end of display name \"%s\"\n",
             namesDriver ? "" : "not ", normalized.c_str());
  SPUString display(deviceName);
  if (!namesDriver) display += u" Driver";
  return display;
}

void addApplication(SPXMLDevice& device, const char* componentType, const char* version,
                    const SPUString& display) {
  device.addApplication({display, SPString(componentType), SPString(), SPString(version)});
}

SPXMLDevice describeDevice(const DeviceRecord& record) {
  SPXMLDevice device(SPString(record.name), record.vendorID, record.subVendorID, record.deviceID,
                     record.subDeviceID, record.bus, record.device, record.function);
  const char* const driverVersion = record.driverVersion[0] != '\0' ? record.driverVersion : "0";
  addApplication(device, "DRVR", driverVersion, driverDisplayName(record.name));
  if (record.firmwareVersion[0] != '\0') {
    SPUString display(record.name);
    display += u" Firmware";
    addApplication(device, "FRMW", record.firmwareVersion, display);
  }
  return device;
}

}  // namespace

int KivWrapper::GetInventory(const char* language) {
  TRACE_STEP("GetInventory: Entered function.\n");
  try {
    const DeviceRecords records(
        EnumeratePciDevices(nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
    if (records == nullptr && GetLastError() == ERROR_NOT_ENOUGH_MEMORY) return kInventoryFailed;
    constexpr std::uint32_t kNoSystemID = 0xFFFFFFFF;
    SPXMLData document(SPString("SVMInventory"), SPString(language), kNoSystemID);
    TRACE_STEP("GetInventory: List of hardware IDs on system is:\n\n");

    CIniReader configuration(".\\DriverConfiguration.ini");
    std::vector<VendorFilter> entries;
    configuration.GetConfigFileEntries(entries);

    for (const DeviceRecord* record = records.get(); record != nullptr; record = record->next) {
      TRACE_STEP("%s\n", record->hardwareID);
      if (!FilterDeviceInventory(*record, entries)) document.addDevice(describeDevice(*record));
    }
    TRACE_STEP("GetInventory: At end of list of hardware IDs.\n");

    inventoryXML = document.generateXML();
    inventoryXMLText = inventoryXML.c_str();
    debugWriter->dumpWideXML(inventoryXMLText, "Inventory");
    return kSuccess;
  } catch (const SPException& e) {
    TRACE_STEP("GetInventory: Caught exception. e.getErrorNum() = %d\n",
               static_cast<int>(e.getErrorNum()));
    return kInventoryFailed;
  }
}

bool KivWrapper::FilterDeviceInventory(const DeviceRecord& record,
                                       const std::vector<VendorFilter>& entries) {
  TRACE_STEP("KivWrapper::FilterDeviceInventory function entered\n");
  const bool listed = std::any_of(entries.begin(), entries.end(), [&](const VendorFilter& entry) {
    return entry.vendorID == record.vendorID;
  });
  if (listed) {
    TRACE_STEP("KivWrapper::FilterDeviceInventory Match found for VendorID %d\n", record.vendorID);
  }
  TRACE_STEP("KivWrapper::FilterDeviceInventory function exiting\n");
  return listed;
}

}  // namespace tolvanix
