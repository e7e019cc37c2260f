#include <gtest/gtest.h>

#include <array>

#include "inventory/DeviceTexts.h"

namespace tolvanix::test {
namespace {

TEST(DeviceTexts, HardwareId_IsReadByPlace) {
  const struct {
    const char* hardwareId;
    std::array<int, 4> numbers;  // vendor, device, subsystem device, subsystem vendor
  } rows[] = {
      {"PCI\\VEN_10DE&DEV_0DF8&SUBSYS_835E103C&REV_A1", {0x10DE, 0x0DF8, 0x835E, 0x103C}},
      {"PCI\\VEN_10de&DEV_0df8&SUBSYS_835e103c", {0x10DE, 0x0DF8, 0x835E, 0x103C}},
      {"PCI\\VEN_8086&DEV_1C3A&CC_0780", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086", {0x8086, 0, 0, 0}},
      {"PCI\\VEN_&DEV&SUBSYS_", {0, 0, 0, 0}},
      {"PCI\\VEN_1aFg9&DEV_x12", {0x1AF, 0, 0, 0}},
      {"PCI\\VEN_FFFFF12345678&DEV_1", {0x5678, 1, 0, 0}},  // higher digits are lost
      {"PCI\\ABC_1&XYZ_2&Q_12345&REV_01", {1, 2, 0x1234, 5}},
      {"PCI\\VEN_8086&DEV_1C3A&SUBSYS_123", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086&DEV_1C3A&SUBSYS_1234_5678", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086&DEV_1C3A\\SUBSYS_12345678", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\", {0, 0, 0, 0}},
  };
  for (const auto& row : rows) {
    DeviceRecord record{};
    std::string_view(row.hardwareId).copy(record.hardwareID, sizeof record.hardwareID - 1);
    ParseHardwareId(record);
    const std::array<int, 4> numbers = {record.vendorID, record.deviceID, record.subDeviceID,
                                        record.subVendorID};
    EXPECT_EQ(numbers, row.numbers) << row.hardwareId;
  }
}

TEST(DeviceTexts, Location_IsTheFirstThreeNumbers) {
  const struct {
    const char* location;
    std::array<int, 3> numbers;
  } rows[] = {
      {"PCI bus 0, device 31, function 3", {0, 31, 3}},
      {"PCI bus 1, device 2, function 3, slot 7", {1, 2, 3}},
      {"PCI bus 2", {2, 0, 0}},
      {"internal", {0, 0, 0}},
      {"", {0, 0, 0}},
      {"PCI bus 65537, device 0, function 0", {1, 0, 0}},
  };
  for (const auto& row : rows) {
    DeviceRecord record{};
    ParseLocation(row.location, record);
    EXPECT_EQ((std::array<int, 3>{record.bus, record.device, record.function}), row.numbers)
        << row.location;
  }
}

}  // namespace
}  // namespace tolvanix::test
