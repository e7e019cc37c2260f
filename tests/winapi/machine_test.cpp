// The computers that registry exports describe.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "inventory/PciEnumeration.h"
#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "winapi/posix/IndirectText.h"
#include "winapi/posix/Machine.h"
#include "winapi/posix/kernel32.h"

namespace tolvanix::test {
namespace {

const std::string kHeader = "Windows Registry Editor Version 5.00\n\n";
const std::filesystem::path kMachines = fixture("machines");

// A line for each PCI device: hardware ID, place, name, driver version.
std::string describeDevices() {
  DeviceRecord* const first =
      EnumeratePciDevices(nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
  std::ostringstream text;
  for (const DeviceRecord* d = first; d != nullptr; d = d->next) {
    text << d->hardwareID << '|' << d->bus << '.' << d->device << '.' << d->function << '|'
         << d->name << '|' << d->driverVersion << '\n';
  }
  FreeDeviceRecords(first);
  return text.str();
}

// The presented system: its version, build and service pack; "none" when it answers nothing.
std::string describeSystem() {
  OSVERSIONINFOEXA version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version)) == FALSE) {
    EXPECT_EQ(GetLastError(), ERROR_INVALID_DATA);
    return "none";
  }
  std::ostringstream text;
  text << version.dwMajorVersion << '.' << version.dwMinorVersion << '.' << version.dwBuildNumber
       << ' ' << version.wServicePackMajor << version.szCSDVersion;
  return text.str();
}

// What the machine of a file says on standard error, without the file's name; it has no devices.
std::string complaintAbout(const std::filesystem::path& file) {
  testing::internal::CaptureStderr();
  const ScopedMachine machine(file);
  EXPECT_EQ(describeDevices(), "");
  EXPECT_EQ(describeSystem(), "0.0.0 0");
  const std::string said = testing::internal::GetCapturedStderr();
  const std::string start = "tolvanix: " + file.string() + ":";
  EXPECT_TRUE(said.starts_with(start)) << said;
  return said.substr(start.size());
}

TEST(RegistryMachine, AllEncodingsAndValueForms_GiveTheSameComputer) {
  for (const char* const name :
       {"forms_utf16.reg", "forms_utf8.reg", "forms_utf8_bom.reg", "forms_regedit4.reg"}) {
    SCOPED_TRACE(name);
    const ScopedMachine machine(kMachines / name);
    EXPECT_EQ(describeDevices(),
              "PCI\\VEN_1DE4&DEV_0001&SUBSYS_00AA1DE4&REV_01|2.3.4|"
              "Quoted \"x\" \\ caf\u00e9 \u7f51|1.2.3.4\n"
              "PCI\\VEN_1DE4&DEV_0002&SUBSYS_00BB1DE4|0.31.3|Expanded \u7f51|5.6.7.8\n");
    EXPECT_EQ(describeSystem(), "6.1.7601 1Service Pack 1");
    EXPECT_EQ(GetSystemDefaultLangID(), 0x0407);
  }
}

TEST(RegistryMachine, Export_CountsAsItIsAfterAnImport) {
  const ScopedMachine machine(kMachines / "import_rules.reg");
  EXPECT_EQ(describeDevices(),
            "PCI\\VEN_1DE4&DEV_0001|7.0.0|kept|\n"
            "PCI\\VEN_1DE4&DEV_0002|0.0.0|default|\n"
            "PCI\\VEN_1DE4&DEV_0003|0.0.0|default|\n"
            "PCI\\VEN_1DE4&DEV_0005|0.0.0|default|\n");
  const winapi::Machine& presented = winapi::presentedMachine();
  ASSERT_EQ(presented.deviceCount(), 5U) << "a device without hardware IDs is one";
  EXPECT_STREQ(presented.deviceProperty(0, SPDRP_DEVICEDESC)->data.c_str(), "new");
  EXPECT_STREQ(presented.deviceProperty(4, SPDRP_FRIENDLYNAME)->data.c_str(), "two\r\nlines");
  EXPECT_FALSE(presented.hasKey("system\\currentcontrolset\\enum\\pci\\gone"));
  EXPECT_TRUE(presented.hasKey("SYSTEM\\CurrentControlSet\\Enum\\PCI\\B"));
}

TEST(RegistryMachine, UnusableFile_IsOneLineAndNoDevices) {
  const std::string device =
      kHeader + "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\A\\1]\n\"HardwareID\"=";
  const std::pair<std::string, const char*> rows[] = {
      {"", "1: the file is empty\n"},
      {"PCI 1\n", "1: this is no header of a registry export\n"},
      {std::string(5000, '\xA5'), "1: this is no header of a registry export\n"},
      {"\xFE\xFF", "1: this is no header of a registry export\n"},
      {utf16File(u"REGEDIT4\n\n") + "x", "3: the file ends in half a UTF-16 unit\n"},
      {kHeader + "hello\n", "3: this is neither a key nor a value\n"},
      {kHeader + '\0', "3: this is neither a key nor a value\n"},
      {kHeader + "[HKEY_LOCAL_MACHINE\\SY", "3: the key has no closing bracket\n"},
      {kHeader + "[]\n", "3: the key has no name\n"},
      {kHeader + "[a] b\n", "3: there is text behind the key\n"},
      {kHeader + "\"a\"=\"b\"\n", "3: this value stands before the first key\n"},
      {device, "4: this is no form of data\n"},
      {device + "1\n", "4: this is no form of data\n"},
      {device + "\"PCI\n\n", "4: the text has no closing quote\n"},
      {device + "\"PCI\"x\n", "4: there is text behind the value\n"},
      {device + "hex(7):50,00,\\", "4: the value ends in the middle\n"},
      {device + "hex(7):50,00,\\\n", "5: a byte is missing in the value\n"},
      {device + "hex(7):50,00,\n", "4: a byte is missing in the value\n"},
      {device + "hex(7:50\n", "4: the type of the value is not followed by \"):\"\n"},
      {device + "dword:123456789\n", "4: one to eight hexadecimal digits needed\n"},
      {kHeader + "[a]\n\"b\"\n", "4: the value's name is not followed by an equals sign\n"},
  };
  const TempDir folder;
  for (const auto& [bytes, complaint] : rows) {
    writeFile(folder / "m.reg", bytes);
    EXPECT_EQ(complaintAbout(folder / "m.reg"), complaint);
  }
  EXPECT_EQ(complaintAbout("no/such/machine.reg"), " No such file or directory\n");
}

TEST(IndirectText, Forms_ResolveAsThePlatformDoes) {
  const std::pair<const char*, std::optional<std::string>> rows[] = {
      {"plain", "plain"},
      {"@oem4.inf,%e1502%;Text; with (all) of it", "Text; with (all) of it"},
      {"@oem4.inf,%a;b%;Text", "Text"},
      {"@System32\\drivers\\pci.sys,#65536;PCI bus %1, device %2, function %3;(0,31,3)",
       "PCI bus 0, device 31, function 3"},
      {"@x.sys,#1073807361;%1 USB %2 Controller - %3 (M);(Maker(R),3.0,1.0)",
       "Maker(R) USB 3.0 Controller - 1.0 (M)"},
      {"@x.sys,#1;%1 of %2 100%;(a)", "a of %2 100%"},
      {"@x.inf,%a%;Adapter;(R)", "Adapter;(R)"},
      {"@x.inf,%a%;", ""},
      {"@x.inf,%a%", std::nullopt},
      {"@x.dll,-100", std::nullopt},
      {"@home", "@home"},
      {"@home, sweet", "@home, sweet"},
      {"@a,", "@a,"},
  };
  for (const auto& [stored, text] : rows) {
    EXPECT_EQ(winapi::resolveIndirectText(stored), text) << stored;
  }
}

TEST(Version, Values_DecideTheAnswer) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "0.0.0 0"},
      {"\"CurrentVersion\"=\"6.3\"\n\"CurrentMajorVersionNumber\"=dword:a\n", "10.0.0 0"},
      {"\"CurrentVersion\"=\"6.2\"\n", "6.2.0 0"},
      {"\"CurrentVersion\"=\"six\"\n", "none"},
      {"\"CurrentVersion\"=dword:6\n", "none"},
      {"\"CurrentMajorVersionNumber\"=\"10\"\n", "none"},
      {"\"CurrentVersion\"=\"6.1\"\n\"CurrentBuild\"=\"x\"\n", "none"},
  };
  const TempDir folder;
  for (const auto& [values, system] : rows) {
    writeFile(folder / "m.reg",
              kHeader + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion]\n" +
                  values);
    const ScopedMachine machine(folder / "m.reg");
    EXPECT_EQ(describeSystem(), system) << values;
  }
}

TEST(Version, Verification_IsTruthfulAndForEqualityAlone) {
  const ScopedMachine machine(kMachines / "forms_utf8.reg");
  constexpr DWORD kBoth = VER_MAJORVERSION | VER_MINORVERSION;
  const DWORDLONG equal = VerSetConditionMask(0, kBoth, VER_EQUAL);
  OSVERSIONINFOEXW wanted{};
  wanted.dwOSVersionInfoSize = sizeof wanted;
  wanted.dwMajorVersion = 6;
  wanted.dwMinorVersion = 1;
  EXPECT_TRUE(VerifyVersionInfoW(&wanted, kBoth, equal));
  wanted.dwMinorVersion = 2;
  EXPECT_FALSE(VerifyVersionInfoW(&wanted, kBoth, equal));
  EXPECT_EQ(GetLastError(), ERROR_OLD_WIN_VERSION);
  constexpr BYTE kGreaterOrEqual = 3;
  EXPECT_FALSE(VerifyVersionInfoW(&wanted, kBoth, VerSetConditionMask(0, kBoth, kGreaterOrEqual)));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
  OSVERSIONINFOA basic{};
  basic.dwOSVersionInfoSize = sizeof basic;
  EXPECT_TRUE(GetVersionExA(&basic));
  EXPECT_EQ(basic.dwMinorVersion, 1U);
  basic.dwOSVersionInfoSize = 100;
  EXPECT_FALSE(GetVersionExA(&basic));
}

TEST(Handles, OfAnotherFamilyOrClosed_AreInvalid) {
  const ScopedMachine machine(kMachines / "forms_utf8.reg");
  HDEVINFO set = SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
  EXPECT_EQ(RegCloseKey(set), static_cast<LSTATUS>(ERROR_INVALID_HANDLE));
  EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
  EXPECT_FALSE(SetupDiDestroyDeviceInfoList(set));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
  int notAHandle = 0;
  EXPECT_EQ(RegQueryValueExA(&notAHandle, "x", nullptr, nullptr, nullptr, nullptr),
            static_cast<LSTATUS>(ERROR_INVALID_HANDLE));
}

}  // namespace
}  // namespace tolvanix::test
