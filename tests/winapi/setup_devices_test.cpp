#include <gtest/gtest.h>

#include "support/ScopedRegistry.h"
#include "winapi/Owner.h"
#include "winapi/winapi.h"

namespace tolvanix {
namespace {

using test::deviceKey;
using test::listOf;
using test::ScopedRegistry;
using test::textOf;

constexpr char kFirstId[] = "PCI\\VEN_1DE4&DEV_7001&REV_01";

DeviceSetOwner presentDevices() {
  return DeviceSetOwner(
      SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
}

SP_DEVINFO_DATA emptyElement() {
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  return device;
}

// The device whose first hardware ID is kFirstId.
SP_DEVINFO_DATA findTestDevice(const DeviceSetOwner& set) {
  SP_DEVINFO_DATA device = emptyElement();
  for (DWORD i = 0; SetupDiEnumDeviceInfo(set.get(), i, &device); ++i) {
    char id[200] = {};
    if (SetupDiGetDeviceRegistryPropertyA(set.get(), &device, SPDRP_HARDWAREID, nullptr,
                                          reinterpret_cast<BYTE*>(id), sizeof id, nullptr) &&
        std::string(id) == kFirstId) {
      return device;
    }
  }
  ADD_FAILURE() << "the test's device is not among the present ones";
  return device;
}

TEST(DeviceSet, PropertySizeQuery_TellsSizeAndType) {
  const ScopedRegistry keys(
      {deviceKey("PCI\\TEST7001\\1", {listOf("HardwareID", {kFirstId, "PCI\\VEN_1DE4"}),
                                      textOf("DeviceDesc", "Name")})});
  const DeviceSetOwner set = presentDevices();
  SP_DEVINFO_DATA device = findTestDevice(set);
  DWORD type = 0;
  DWORD needed = 0;
  EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(set.get(), &device, SPDRP_HARDWAREID, &type,
                                                 nullptr, 0, &needed));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
  EXPECT_EQ(type, static_cast<DWORD>(REG_MULTI_SZ));
  const std::string whole = listOf("", {kFirstId, "PCI\\VEN_1DE4"}).bytes;
  ASSERT_EQ(needed, whole.size());

  std::string buffer(needed, '#');
  auto* const bytes = reinterpret_cast<BYTE*>(buffer.data());
  EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(set.get(), &device, SPDRP_HARDWAREID, nullptr,
                                                 bytes, needed - 1, nullptr));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
  EXPECT_EQ(buffer, std::string(needed, '#')) << "one byte short leaves the buffer alone";
  EXPECT_TRUE(SetupDiGetDeviceRegistryPropertyA(set.get(), &device, SPDRP_HARDWAREID, nullptr,
                                                bytes, needed, nullptr));
  EXPECT_EQ(buffer, whole);
}

TEST(DeviceSet, AbsentProperty_IsInvalidData) {
  const ScopedRegistry keys({deviceKey(
      "PCI\\TEST7001\\1", {listOf("HardwareID", {kFirstId}), textOf("FriendlyName", "")})});
  const DeviceSetOwner set = presentDevices();
  SP_DEVINFO_DATA device = findTestDevice(set);
  char text[10] = "#########";
  DWORD size = 0;
  EXPECT_FALSE(SetupDiGetDeviceRegistryPropertyA(set.get(), &device, SPDRP_DRIVER, nullptr,
                                                 reinterpret_cast<BYTE*>(text), sizeof text,
                                                 nullptr));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_DATA));
  EXPECT_TRUE(SetupDiGetDeviceRegistryPropertyA(set.get(), &device, SPDRP_FRIENDLYNAME, nullptr,
                                                reinterpret_cast<BYTE*>(text), sizeof text, &size))
      << "an empty text is present";
  EXPECT_EQ(size, 1U);
}

TEST(DeviceSet, Enumeration_EndsWithNoMoreItemsAndChecksItsArguments) {
  const DeviceSetOwner set = presentDevices();
  SP_DEVINFO_DATA device = emptyElement();
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 1000000, &device));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
  device.cbSize = 0;
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 0, &device));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_USER_BUFFER));
  EXPECT_FALSE(SetupDiEnumDeviceInfo(INVALID_HANDLE_VALUE, 0, &device));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
  EXPECT_FALSE(SetupDiDestroyDeviceInfoList(INVALID_HANDLE_VALUE));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST(DeviceSet, MadeEmpty_HasNoDevices) {
  const GUID guid{};
  const DeviceSetOwner set(SetupDiCreateDeviceInfoList(&guid, nullptr));
  ASSERT_TRUE(set);
  SP_DEVINFO_DATA device = emptyElement();
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 0, &device));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
}

TEST(DeviceSet, NoClassWithoutAllClasses_IsRefused) {
  EXPECT_EQ(SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

}  // namespace
}  // namespace tolvanix
