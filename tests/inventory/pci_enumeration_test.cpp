#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "inventory/PciEnumeration.h"
#include "support/ScopedRegistry.h"

namespace tolvanix {
namespace {

using test::deviceKey;
using test::listOf;
using test::ScopedRegistry;
using test::TestKey;
using test::textOf;

constexpr char kClass[] = "{00000000-7e57-0000-0000-000000000000}";

struct RecordsDeleter {
  void operator()(DeviceRecord* first) const { FreeDeviceRecords(first); }
};
using Records = std::unique_ptr<DeviceRecord, RecordsDeleter>;

Records enumerate() {
  return Records(EnumeratePciDevices(nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
}

// The test's devices alone: a platform may bring others.
std::vector<const DeviceRecord*> ofTestVendor(const Records& records) {
  std::vector<const DeviceRecord*> found;
  for (const DeviceRecord* record = records.get(); record != nullptr; record = record->next) {
    if (record->vendorID == 0x1DE4) found.push_back(record);
  }
  return found;
}

TestKey driverKey(const std::string& number, test::TestValue version) {
  return {std::string(R"(SYSTEM\CurrentControlSet\Control\Class\)")
              .append(kClass)
              .append("\\")
              .append(number),
          {std::move(version)}};
}

std::string driverName(const std::string& number) {
  return std::string(kClass) + '\\' + number;
}

TEST(PciEnumeration, Device_IsDescribedFromItsPropertiesAndDriverKey) {
  const ScopedRegistry keys(
      {deviceKey("PCI\\TEST\\1",
                 {listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_0001&SUBSYS_0534ABCD&REV_04",
                                        "PCI\\VEN_1DE4&DEV_0001"}),
                  textOf("DeviceDesc", "Description"), textOf("FriendlyName", "Friendly name"),
                  textOf("LocationInformation", "PCI bus 2, device 31, function 7"),
                  textOf("Driver", driverName("0001"))}),
       driverKey("0001", textOf("DriverVersion", "1.2.3.4"))});
  const Records records = enumerate();
  const auto found = ofTestVendor(records);
  ASSERT_EQ(found.size(), 1U);
  const DeviceRecord& device = *found[0];
  EXPECT_STREQ(device.name, "Friendly name");
  EXPECT_STREQ(device.hardwareID, "PCI\\VEN_1DE4&DEV_0001&SUBSYS_0534ABCD&REV_04");
  EXPECT_EQ(device.deviceID, 1);
  EXPECT_EQ(device.subDeviceID, 0x0534);
  EXPECT_EQ(device.subVendorID, 0xABCD);
  EXPECT_EQ(device.bus, 2);
  EXPECT_EQ(device.device, 31);
  EXPECT_EQ(device.function, 7);
  EXPECT_STREQ(device.driverVersion, "1.2.3.4");
  EXPECT_STREQ(device.firmwareVersion, "");
}

TEST(PciEnumeration, PrefixOfFirstHardwareId_DecidesCaseSensitively) {
  const ScopedRegistry keys(
      {deviceKey("PCI\\TEST\\1", {listOf("HardwareID", {"pci\\VEN_1DE4&DEV_0001"})}),
       deviceKey("PCI\\TEST\\2", {listOf("HardwareID", {"USB\\X", "PCI\\VEN_1DE4&DEV_0002"})}),
       deviceKey("PCI\\TEST\\3", {textOf("FriendlyName", "no hardware ID")}),
       deviceKey("ROOT\\TEST\\4", {listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_0004"})})});
  const Records records = enumerate();
  const auto found = ofTestVendor(records);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0]->deviceID, 4);
  EXPECT_STREQ(found[0]->name, "default");
  EXPECT_STREQ(found[0]->driverVersion, "");
}

TEST(PciEnumeration, RepeatedDevices_LeaveTheFirst) {
  const auto device = [](const char* instance, const char* id, const char* name, int bus) {
    return deviceKey(std::string("PCI\\TEST\\").append(instance),
                     {listOf("HardwareID", {id}), textOf("FriendlyName", name),
                      textOf("LocationInformation", "bus " + std::to_string(bus))});
  };
  const ScopedRegistry keys({device("1", "PCI\\VEN_1DE4&DEV_0001&SUBSYS_00010002", "first", 0),
                             device("2", "PCI\\VEN_1DE4&DEV_0001&SUBSYS_00010002", "again", 0),
                             device("3", "PCI\\VEN_1DE4&DEV_0001&SUBSYS_00010002", "slot", 1),
                             device("4", "PCI\\VEN_1DE4&DEV_0001&SUBSYS_00010003", "maker", 0),
                             device("5", "PCI\\ven_1de4&dev_0001&subsys_00010002&REV_2", "case", 0),
                             device("6", "PCI\\VEN_1DE4&DEV_0002&SUBSYS_00010002", "last", 0)});
  const Records records = enumerate();
  std::string names;
  for (const DeviceRecord* found : ofTestVendor(records)) names.append(found->name).append(" ");
  EXPECT_EQ(names, "first slot maker last ");
}

TEST(PciEnumeration, LongTexts_AreReadWholeAndCutToTheirFields) {
  std::vector<std::string> ids(1, "PCI\\VEN_1DE4&DEV_0001");
  for (int i = 0; i < 100; ++i) ids.push_back("PCI\\VEN_1DE4&DEV_0001&CC_0200" + std::to_string(i));
  const ScopedRegistry keys(
      {deviceKey("PCI\\TEST\\1",
                 {listOf("HardwareID", ids), textOf("FriendlyName", std::string(3000, 'n'))}),
       deviceKey("PCI\\TEST\\2",
                 {listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_0002"}),
                  textOf("FriendlyName", std::string(199, 'n')),
                  textOf("LocationInformation", std::string(999, ' ') + "bus 6")})});
  const Records records = enumerate();
  const auto found = ofTestVendor(records);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_STREQ(found[0]->hardwareID, "PCI\\VEN_1DE4&DEV_0001");
  EXPECT_EQ(found[0]->name, std::string(199, 'n'));
  EXPECT_EQ(found[1]->name, std::string(199, 'n'));
  EXPECT_EQ(found[1]->bus, 6);
}

TEST(PciEnumeration, DriverVersion_FitsIn64Bytes) {
  const auto device = [](const std::string& number) {
    return deviceKey("PCI\\TEST\\" + number, {listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_" + number}),
                                              textOf("Driver", driverName(number))});
  };
  const ScopedRegistry keys({device("0001"), device("0002"), device("0003"), device("0004"),
                             device("0005"),
                             driverKey("0001", textOf("DriverVersion", std::string(63, '1'))),
                             driverKey("0002", textOf("DriverVersion", std::string(64, '1'))),
                             driverKey("0003", {"DriverVersion", REG_BINARY, std::string(64, '2')}),
                             driverKey("0004", textOf("DriverDate", "1-1-2020"))});
  const Records records = enumerate();
  std::vector<std::string> versions;
  for (const DeviceRecord* found : ofTestVendor(records))
    versions.emplace_back(found->driverVersion);
  EXPECT_EQ(versions,
            (std::vector<std::string>{std::string(63, '1'), "", std::string(64, '2'), "", ""}));
}

TEST(PciEnumeration, RefusedDeviceSet_IsAnEmptyList) {
  EXPECT_EQ(EnumeratePciDevices(nullptr, nullptr, 0), nullptr);
  EXPECT_EQ(EnumeratePciDevices("\\\\other", nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES), nullptr);
  FreeDeviceRecords(nullptr);
}

}  // namespace
}  // namespace tolvanix
