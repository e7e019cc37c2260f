// The presented computer: names and versions.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "winapi/posix/kernel32.h"
#include "winapi/posix/machine/IndirectText.h"
#include "winapi/posix/machine/PciIds.h"
#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::test {
namespace {

// The presented system: its version, build and service pack; "none" when it returns nothing.
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

TEST(PciIds, Name_IsOfTheDeviceElseOfItsClass) {
  // Not sorted, as a list that somebody added to.
  const std::string list =
      "# comment\n\n1de9  Late vendor\n\t0001  Late device\n1de4  Vendor\n\t0009  Ninth\n"
      "\t0001  First\n# 1de5  note\n\t0002  Second\n\t\t1df4 00ab  Board of second\n# note\n"
      "\t\t1df4 00ac  Other board\n\t0004  \n\t00\n"
      "C 04  Media\n\t03  Audio\n\t\t01  Interface\n\t00  \nC 02  Network\n\t00  Ethernet\n"
      "S 05  Of another kind\n\t0003  No device\n\t06  No class\n"
      "1df0  After the classes\n\t0009  Unended";
  const std::pair<winapi::PciModel, const char*> rows[] = {
      {{0x1DE4, 1, 0x040300}, "First"},
      {{0x1DE4, 2, 0x040300}, "Second"},
      {{0x1DE4, 9, 0}, "Ninth"},
      {{0x1DE9, 1, 0}, "Late device"},
      {{0x1DF0, 9, 0}, "Unended"},
      {{0x1DE4, 3, 0x040301}, "Audio"},
      {{0x1DF0, 1, 0x020001}, "Ethernet"},
      {{0x1DE4, 4, 0x040000}, "Media"},
      {{0x1DE4, 3, 0x04FF00}, "Media"},
      {{0x1DF0, 3, 0x050600}, ""},
      {{0x1DE4, 0xAB, 0}, ""},
      {{0x1DE4, 1, 0}, "First"},
  };
  std::vector<winapi::PciModel> models;
  for (const auto& [model, name] : rows) models.push_back(model);
  const std::vector<std::string_view> names = winapi::pciNames(list, models);
  ASSERT_EQ(names.size(), std::size(rows));
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(names[i], rows[i].second) << i;
  EXPECT_EQ(winapi::pciNames("", models), std::vector<std::string_view>(models.size()));
}

TEST(SysfsMachine, HardwareIds_HaveTheRevisionThatTheTreeHas) {
  const std::string config("\xE4\x1D\x07\0\0\0\0\0\xA3\0\x80\x02", 12);
  struct Row {
    const char* revision;  // null for no file
    std::string config;
    const char* first;  // ID, of those without a revision that all have
  };
  const Row rows[] = {
      {"0x0c\n", config, "PCI\\VEN_1DE4&DEV_0007&SUBSYS_00AB1DF4&REV_0C|"},
      {nullptr, config, "PCI\\VEN_1DE4&DEV_0007&SUBSYS_00AB1DF4&REV_A3|"},
      {"?\n", config.substr(0, 9), "PCI\\VEN_1DE4&DEV_0007&SUBSYS_00AB1DF4&REV_A3|"},
      {nullptr, config.substr(0, 8), ""},
      {nullptr, "", ""},
  };
  for (const Row& row : rows) {
    const TempDir tree;
    const auto folder = tree.path() / "bus/pci/devices/0000:00:01.0";
    writeFile(folder / "uevent", "PCI_CLASS=28000\nPCI_ID=1DE4:0007\nPCI_SUBSYS_ID=1DF4:00AB\n");
    if (row.revision != nullptr) writeFile(folder / "revision", row.revision);
    if (!row.config.empty()) writeFile(folder / "config", row.config);
    std::string ids = winapi::loadMachine(tree.path())->deviceProperty(0, SPDRP_HARDWAREID)->data;
    std::replace(ids.begin(), ids.end(), '\0', '|');
    EXPECT_EQ(ids, std::string(row.first) +
                       "PCI\\VEN_1DE4&DEV_0007&SUBSYS_00AB1DF4|"
                       "PCI\\VEN_1DE4&DEV_0007&CC_028000|"
                       "PCI\\VEN_1DE4&DEV_0007&CC_0280||");
  }
}

TEST(Version, Values_DecideTheAnswer) {
  const std::string key =
      "Windows Registry Editor Version 5.00\n\n"
      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion]\n";
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
    writeFile(folder / "m.reg", key + values);
    const ScopedMachine machine(folder / "m.reg");
    EXPECT_EQ(describeSystem(), system) << values;
  }
}

TEST(Version, Verification_IsTruthfulAndForEqualityAlone) {
  const ScopedMachine machine(fixture("machines/forms_utf8.reg"));
  EXPECT_EQ(describeSystem(), "6.1.7601 1Service Pack 1");
  EXPECT_EQ(GetSystemDefaultLangID(), 0x0407);
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

}  // namespace
}  // namespace tolvanix::test
