// Device sets and the driver keys of their devices, to the documented behaviour.
#include <gtest/gtest.h>

#include <string>

#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "winapi/Owner.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

class DeviceSet : public testing::Test {
 protected:
  DeviceSet() { device.cbSize = sizeof device; }

  // Makes the present device with this first hardware ID the one that is asked for.
  void find(const std::string& hardwareId) {
    for (DWORD i = 0; SetupDiEnumDeviceInfo(set.get(), i, &device); ++i) {
      char id[200] = {};
      if (property(SPDRP_HARDWAREID, id, sizeof id) && id == hardwareId) return;
    }
    FAIL() << hardwareId << " is not among the present devices";
  }
  bool property(DWORD number, char* text, DWORD room) {
    return SetupDiGetDeviceRegistryPropertyA(set.get(), &device, number, &type,
                                             reinterpret_cast<BYTE*>(text), room, &size) != FALSE;
  }

  const ScopedMachine machine{fixture("computers/four_devices.reg")};
  const DeviceSetOwner set{
      SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES)};
  SP_DEVINFO_DATA device{};
  DWORD type = 0;
  DWORD size = 0;
};

TEST_F(DeviceSet, Property_TellsItsSizeAndTypeAndNeedsAllOfItsRoom) {
  find("PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4&REV_04");
  const std::string ids(
      "PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4&REV_04\0PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4\0",
      83);
  EXPECT_FALSE(property(SPDRP_HARDWAREID, nullptr, 0));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(type, REG_MULTI_SZ);
  ASSERT_EQ(size, ids.size() + 1);
  std::string buffer(size, '#');
  EXPECT_FALSE(property(SPDRP_HARDWAREID, buffer.data(), size - 1));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(buffer, std::string(size, '#')) << "one byte short leaves the buffer alone";
  EXPECT_TRUE(property(SPDRP_HARDWAREID, buffer.data(), size));
  EXPECT_EQ(buffer, ids + '\0');
  find("PCI\\VEN_1DF1&DEV_1E3A&SUBSYS_04931DF4&REV_04");
  EXPECT_FALSE(property(SPDRP_FRIENDLYNAME, buffer.data(), 10)) << "it has none";
  EXPECT_EQ(GetLastError(), ERROR_INVALID_DATA);
}

TEST_F(DeviceSet, DriverKey_AnswersWhatFits) {
  HKEY opened = nullptr;
  const std::string path =
      R"(SYSTEM\CurrentControlSet\Control\Class\{4d36e972-e325-11ce-bfc1-08002be10318}\000)";
  for (const char last : {'2', '1'}) {
    const auto error = static_cast<DWORD>(
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, (path + last).c_str(), 0, KEY_QUERY_VALUE, &opened));
    ASSERT_EQ(error, last == '1' ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
  }
  const RegistryKeyOwner key(opened);
  char version[12] = "#";
  const auto query = [&](const char* name, DWORD room) {
    size = room;
    return static_cast<DWORD>(
        RegQueryValueExA(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(version), &size));
  };
  EXPECT_EQ(query("None", 12), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(query("driverVersion", 10), ERROR_MORE_DATA);
  EXPECT_EQ(size, 11U);
  EXPECT_STREQ(version, "#") << "one byte short leaves the buffer alone";
  EXPECT_EQ(query("driverVersion", 12), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_STREQ(version, "12.15.22.6");
}

TEST_F(DeviceSet, Misuse_HasItsError) {
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 1000000, &device));
  EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
  EXPECT_FALSE(SetupDiEnumDeviceInfo(INVALID_HANDLE_VALUE, 0, &device));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
  device.cbSize = 0;
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 0, &device));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_USER_BUFFER);
  EXPECT_EQ(SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace tolvanix::test
