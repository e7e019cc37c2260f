#include <gtest/gtest.h>

#include <array>

#include "inventory/DeviceTexts.h"

namespace tolvanix {
namespace {

using Numbers = std::array<int, 4>;

TEST(DeviceTexts, ParseHexNumber_TakesTheLeadingDigits) {
  EXPECT_EQ(ParseHexNumber("8086"), 0x8086);
  EXPECT_EQ(ParseHexNumber("10de"), 0x10DE);
  EXPECT_EQ(ParseHexNumber("1aFg9"), 0x1AF);
  EXPECT_EQ(ParseHexNumber(""), 0);
  EXPECT_EQ(ParseHexNumber("x12"), 0);
  EXPECT_EQ(ParseHexNumber("FFFFF12345678"), 0x5678) << "higher digits are lost";
}

TEST(DeviceTexts, ParseHardwareId_TakesFieldsByPlace) {
  const struct {
    const char* hardwareId;
    Numbers numbers;  // vendor, device, subsystem device, subsystem vendor
  } cases[] = {
      {"PCI\\VEN_10DE&DEV_0DF8&SUBSYS_835E103C&REV_A1", {0x10DE, 0x0DF8, 0x835E, 0x103C}},
      {"PCI\\VEN_10de&DEV_0df8&SUBSYS_835e103c", {0x10DE, 0x0DF8, 0x835E, 0x103C}},
      {"PCI\\VEN_8086&DEV_1C3A&CC_0780", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086&DEV_1C3A", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086", {0x8086, 0, 0, 0}},
      {"PCI\\VEN_&DEV&SUBSYS_", {0, 0, 0, 0}},
      {"PCI\\ABC_1&XYZ_2&Q_12345&REV_01", {1, 2, 0x1234, 5}},
      {"PCI\\VEN_8086&DEV_1C3A&SUBSYS_123", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086&DEV_1C3A&SUBSYS_1234_5678", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\VEN_8086&DEV_1C3A\\SUBSYS_12345678", {0x8086, 0x1C3A, 0, 0}},
      {"PCI\\", {0, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    DeviceRecord record{};
    std::string_view(c.hardwareId).copy(record.hardwareID, sizeof record.hardwareID - 1);
    ParseHardwareId(record);
    EXPECT_EQ((Numbers{record.vendorID, record.deviceID, record.subDeviceID, record.subVendorID}),
              c.numbers)
        << c.hardwareId;
  }
}

TEST(DeviceTexts, ParseLocation_TakesTheFirstThreeNumbers) {
  const struct {
    const char* location;
    std::array<int, 3> numbers;
  } cases[] = {
      {"PCI bus 0, device 31, function 3", {0, 31, 3}},
      {"PCI bus 1, device 2, function 3, slot 7", {1, 2, 3}},
      {"PCI bus 2", {2, 0, 0}},
      {"internal", {0, 0, 0}},
      {"", {0, 0, 0}},
      {"PCI bus 65537, device 0, function 0", {1, 0, 0}},
  };
  for (const auto& c : cases) {
    DeviceRecord record{};
    ParseLocation(c.location, record);
    EXPECT_EQ((std::array<int, 3>{record.bus, record.device, record.function}), c.numbers)
        << c.location;
  }
}

}  // namespace
}  // namespace tolvanix
