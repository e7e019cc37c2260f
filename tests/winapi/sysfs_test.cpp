// The computers that sysfs trees describe.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "inventory/PciEnumeration.h"
#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "winapi/posix/Machine.h"
#include "winapi/posix/PciIds.h"

namespace tolvanix::test {
namespace {

class SysfsMachine : public testing::Test {
 protected:
  void add(const std::string& address,
           std::initializer_list<std::pair<std::string_view, std::string_view>> files) const {
    for (const auto& [name, text] : files) {
      writeFile(root / "bus/pci/devices" / address / name, std::string(text) + '\n');
    }
  }

  static std::string propertyOf(std::size_t device, DWORD property) {
    const auto value = winapi::presentedMachine().deviceProperty(device, property);
    if (!value) return "absent";
    std::string text = value->type == REG_SZ ? winapi::textIn(*value) : value->data;
    std::replace(text.begin(), text.end(), '\0', '#');
    return text;
  }

  // "<first hardware ID> <driver version>\n" of each device.
  static std::string enumerated() {
    DeviceRecord* const first = EnumeratePciDevices(nullptr, nullptr, 6);
    std::string text;
    for (const DeviceRecord* d = first; d != nullptr; d = d->next) {
      text.append(d->hardwareID).append(" ").append(d->driverVersion).append("\n");
    }
    FreeDeviceRecords(first);
    return text;
  }

  const TempDir root;
};

TEST_F(SysfsMachine, Function_GetsWhatWindowsWouldGiveIt) {
  add("0001:0a:1f.3", {{"uevent",
                        "DRIVER=snd_dev-x\nPCI_CLASS=40300\nPCI_ID=1DE4:29C0\n"
                        "PCI_SUBSYS_ID=1028:00AB\nPCI_SLOT_NAME=0001:0a:1f.3"},
                       {"revision", "0x0c"},
                       {"driver/module/version", "7.5-k"}});
  const ScopedMachine machine(root.path());
  EXPECT_EQ(propertyOf(0, SPDRP_HARDWAREID),
            "PCI\\VEN_1DE4&DEV_29C0&SUBSYS_00AB1028&REV_0C#PCI\\VEN_1DE4&DEV_29C0&SUBSYS_00AB1028#"
            "PCI\\VEN_1DE4&DEV_29C0&CC_040300#PCI\\VEN_1DE4&DEV_29C0&CC_0403##");
  EXPECT_EQ(propertyOf(0, SPDRP_LOCATION_INFORMATION), "PCI bus 266, device 31, function 3");
  EXPECT_EQ(propertyOf(0, SPDRP_DEVICEDESC), "PCI Device");
  EXPECT_EQ(propertyOf(0, SPDRP_FRIENDLYNAME), "absent");
  EXPECT_EQ(enumerated(), "PCI\\VEN_1DE4&DEV_29C0&SUBSYS_00AB1028&REV_0C 7.5-k\n");
}

TEST_F(SysfsMachine, Functions_AreOrderedByAddress) {
  for (const char* const address :
       {"10000:00:00.0", "0000:10:00.0", "0000:02:1f.1", "0000:02:03.0", "0000:02:1f.0"}) {
    add(address, {{"vendor", "0x1de4"}, {"device", "0x0001"}});
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

TEST_F(SysfsMachine, Snapshot_IsReadFromTheFilesItHas) {
  add("0000:00:01.0", {{"vendor", "0x1de4"},
                       {"device", "0x0007"},
                       {"modalias", "pci:v00001DE4d00000007sv00001AF4sd00001100bc02sc80i0A"}});
  add("0000:00:02.0", {{"uevent", "PCI_ID=1DE4:0008\nDRIVER=made-up"},
                       {"class", "0x0c0330"},
                       {"subsystem_vendor", "0x1af4"},
                       {"subsystem_device", "0x0011"}});
  // Left out: what has no identifiers, is no function, or has gone.
  add("0000:00:03.0", {{"irq", "1"}});
  add("0000:00:04.0", {{"vendor", "nonsense"}});
  add("not a function", {{"vendor", "0x1de4"}, {"device", "0x0001"}});
  const auto devices = root / "bus/pci/devices";
  std::filesystem::create_directory_symlink("../gone", devices / "0000:00:05.0");
  std::filesystem::create_directory_symlink("../other-driver", devices / "0000:00:01.0/driver");
  writeFile(root / "module/made_up/version", "3\n");
  writeFile(root / "module/other_driver/version", "4\n");
  const ScopedMachine machine(root.path());
  EXPECT_EQ(enumerated(),
            "PCI\\VEN_1DE4&DEV_0007&SUBSYS_11001AF4&REV_00 4\n"
            "PCI\\VEN_1DE4&DEV_0008&SUBSYS_00111AF4&REV_00 3\n");
  EXPECT_NE(propertyOf(0, SPDRP_HARDWAREID).find("&CC_02800A"), std::string::npos);
  EXPECT_NE(propertyOf(1, SPDRP_HARDWAREID).find("&CC_0C0330"), std::string::npos);
}

TEST_F(SysfsMachine, FolderWithoutPciDevices_IsOneLineAndNoDevices) {
  testing::internal::CaptureStderr();
  const ScopedMachine machine(root.path());
  EXPECT_EQ(enumerated(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tolvanix: " + root.path().string() + "/bus/pci/devices: No such file or directory\n");
  const std::string release = readFile("/proc/sys/kernel/osrelease");
  OSVERSIONINFOEXA version{};
  version.dwOSVersionInfoSize = sizeof version;
  ASSERT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version)));
  EXPECT_TRUE(release.starts_with(std::to_string(version.dwMajorVersion) + '.' +
                                  std::to_string(version.dwMinorVersion)))
      << release;
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
}  // namespace tolvanix::test
