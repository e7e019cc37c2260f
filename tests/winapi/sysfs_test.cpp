// The computers that sysfs trees describe.
#include <gtest/gtest.h>

#include "inventory/PciEnumeration.h"
#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "support/SysfsTree.h"
#include "winapi/posix/PciIds.h"

namespace tolvanix {
namespace {

using test::addSysfsDriver;
using test::addSysfsFunction;
using test::ScopedMachine;
using test::TempDir;
using test::writeFile;

std::string propertyOf(std::size_t device, DWORD property) {
  const auto value = winapi::presentedMachine().deviceProperty(device, property);
  if (!value) return "absent";
  return value->type == REG_SZ ? winapi::textIn(*value) : value->data;
}

TEST(SysfsMachine, Function_GetsWhatWindowsWouldGiveIt) {
  const TempDir root;
  addSysfsDriver(root.path(), "snd_dev-x", "snd_module", "7.5-k");
  addSysfsFunction(root.path(),
                   {"0001:0a:1f.3", 0x1DE4, 0x29C0, 0x1028, 0xAB, 0x040300, 0xC, "snd_dev-x"});
  const ScopedMachine machine(root.path());
  ASSERT_EQ(winapi::presentedMachine().deviceCount(), 1U);
  const std::string ids =
      "PCI\\VEN_1DE4&DEV_29C0&SUBSYS_00AB1028&REV_0C#PCI\\VEN_1DE4&DEV_29C0&SUBSYS_00AB1028#"
      "PCI\\VEN_1DE4&DEV_29C0&CC_040300#PCI\\VEN_1DE4&DEV_29C0&CC_0403##";
  std::string list = propertyOf(0, SPDRP_HARDWAREID);
  std::replace(list.begin(), list.end(), '\0', '#');
  EXPECT_EQ(list, ids);
  EXPECT_EQ(propertyOf(0, SPDRP_LOCATION_INFORMATION), "PCI bus 266, device 31, function 3");
  EXPECT_EQ(propertyOf(0, SPDRP_DEVICEDESC), "PCI Device");
  EXPECT_EQ(propertyOf(0, SPDRP_FRIENDLYNAME), "absent");
  DeviceRecord* const record = EnumeratePciDevices(nullptr, nullptr, 6);
  ASSERT_NE(record, nullptr);
  EXPECT_STREQ(record->driverVersion, "7.5-k");
  FreeDeviceRecords(record);
}

TEST(SysfsMachine, Functions_AreOrderedByAddress) {
  const TempDir root;
  for (const char* const address :
       {"10000:00:00.0", "0000:10:00.0", "0000:02:1f.1", "0000:02:03.0", "0000:02:1f.0"}) {
    addSysfsFunction(root.path(), {address, 0x1DE4, 1, 0, 0, 0, 0, ""});
  }
  const ScopedMachine machine(root.path());
  std::string places;
  for (std::size_t i = 0; i < winapi::presentedMachine().deviceCount(); ++i) {
    places.append(propertyOf(i, SPDRP_LOCATION_INFORMATION)).append("\n");
  }
  EXPECT_EQ(places,
            "PCI bus 2, device 3, function 0\nPCI bus 2, device 31, function 0\n"
            "PCI bus 2, device 31, function 1\nPCI bus 16, device 0, function 0\n"
            "PCI bus 16777216, device 0, function 0\n");
}

TEST(SysfsMachine, Snapshot_IsReadFromTheFilesItHas) {
  const TempDir root;
  const auto devices = root / "bus/pci/devices";
  writeFile(devices / "0000:00:01.0" / "vendor", "0x1de4\n");
  writeFile(devices / "0000:00:01.0" / "device", "0x0007\n");
  writeFile(devices / "0000:00:01.0" / "modalias",
            "pci:v00001DE4d00000007sv00001AF4sd00001100bc02sc80i0A\n");
  writeFile(devices / "0000:00:02.0" / "uevent", "PCI_ID=1DE4:0008\nDRIVER=made-up\n");
  writeFile(devices / "0000:00:02.0" / "class", "0x0c0330\n");
  writeFile(devices / "0000:00:02.0" / "subsystem_vendor", "0x1af4\n");
  writeFile(devices / "0000:00:02.0" / "subsystem_device", "0x0011\n");
  writeFile(root / "module/made_up/version", "3\n");
  writeFile(devices / "0000:00:03.0" / "irq", "1\n");
  writeFile(devices / "0000:00:04.0" / "vendor", "nonsense\n");
  writeFile(devices / "not a function" / "vendor", "0x1de4\n");
  std::filesystem::create_directory_symlink("../gone", devices / "0000:00:05.0");
  const ScopedMachine machine(root.path());
  DeviceRecord* const first = EnumeratePciDevices(nullptr, nullptr, 6);
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->hardwareID, "PCI\\VEN_1DE4&DEV_0007&SUBSYS_11001AF4&REV_00");
  EXPECT_NE(propertyOf(0, SPDRP_HARDWAREID).find("&CC_02800A"), std::string::npos);
  EXPECT_EQ(propertyOf(0, SPDRP_DRIVER), "absent");
  ASSERT_NE(first->next, nullptr);
  EXPECT_STREQ(first->next->hardwareID, "PCI\\VEN_1DE4&DEV_0008&SUBSYS_00111AF4&REV_00");
  EXPECT_NE(propertyOf(1, SPDRP_HARDWAREID).find("&CC_0C0330"), std::string::npos);
  EXPECT_STREQ(first->next->driverVersion, "3") << "a built-in driver's module";
  EXPECT_EQ(first->next->next, nullptr) << "functions without their files are left out";
  FreeDeviceRecords(first);
}

TEST(SysfsMachine, FolderWithoutPciDevices_IsOneLineAndNoDevices) {
  const TempDir root;
  testing::internal::CaptureStderr();
  const ScopedMachine machine(root.path());
  EXPECT_EQ(EnumeratePciDevices(nullptr, nullptr, 6), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tolvanix: " + root.path().string() + "/bus/pci/devices: No such file or directory\n");
}

TEST(SysfsMachine, Version_IsThatOfTheKernel) {
  const TempDir root;
  test::makeSysfsTree(root.path(), 20);
  const ScopedMachine machine(root.path());
  EXPECT_EQ(winapi::presentedMachine().deviceCount(), 20U);
  const std::string release = test::readFile("/proc/sys/kernel/osrelease");
  OSVERSIONINFOEXA version{};
  version.dwOSVersionInfoSize = sizeof version;
  ASSERT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version)));
  const std::string start =
      std::to_string(version.dwMajorVersion) + '.' + std::to_string(version.dwMinorVersion);
  EXPECT_TRUE(release.starts_with(start)) << release;
  EXPECT_EQ(version.wServicePackMajor, 0);
}

TEST(PciIds, Name_IsOfTheSubsystemElseOfTheDevice) {
  const TempDir folder;
  const auto file = folder / "pci.ids";
  writeFile(file,
            "# comment\n1de9  Late vendor\n\t0001  Late device\n1de4  Vendor\n\t0002  Second\n"
            "\t\t1028 00ab  Board of second\n# note\n\t\t1028 00ac  Other board\n\t0001  First\n"
            "C 02  Class\n\t0003  No device\n1df0  Last\n\t0009  Unended");
  const winapi::PciIds names{winapi::MappedFile(file.c_str())};
  EXPECT_EQ(names.name(0x1DE4, 2, 0x1028, 0xAC), "Other board");
  EXPECT_EQ(names.name(0x1DE4, 2, 0x1028, 0xAD), "Second");
  EXPECT_EQ(names.name(0x1DE4, 1, 0x1028, 0xAB), "First");
  EXPECT_EQ(names.name(0x1DE9, 1, 0, 0), "Late device");
  EXPECT_EQ(names.name(0x1DF0, 9, 0, 0), "Unended");
  EXPECT_EQ(names.name(0x1DE4, 3, 0, 0), "");
  EXPECT_EQ(winapi::PciIds(winapi::MappedFile("/no/such/list")).name(1, 1, 0, 0), "");
}

}  // namespace
}  // namespace tolvanix
