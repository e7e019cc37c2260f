// The presented computer: names and versions.
#include <gtest/gtest.h>

#include <utility>

#include "support/Computer.h"
#include "support/Files.h"
#include "winapi/posix/kernel32.h"
#include "winapi/posix/machine/PciIds.h"
#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::test {
namespace {

using namespace std::string_literals;

TEST(PciIds, Name_IsOfTheDeviceElseOfItsClass) {
  const std::string list = readFile(fixture("machines/pci.ids"));
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
  std::vector<std::string_view> names;
  for (const auto& [model, name] : rows) {
    models.push_back(model);
    names.emplace_back(name);
  }
  EXPECT_EQ(winapi::pciNames(list, models), names);
  EXPECT_EQ(winapi::pciNames("", models), std::vector<std::string_view>(models.size()));
}

TEST(SysfsMachine, HardwareIds_HaveTheRevisionThatTheTreeHas) {
  const std::string config("\xE4\x1D\x07\0\0\0\0\0\xA3\0\x80\x02", 12);
  const struct {
    const char* revision;  // null for no file
    std::string config;
    const char* ending;  // of the first ID, which is left out without a revision
  } rows[] = {
      {"0x0c\n", config, "&REV_0C"},
      {nullptr, config, "&REV_A3"},
      {"?\n", config.substr(0, 9), "&REV_A3"},
      {nullptr, config.substr(0, 8), ""},
      {nullptr, "", ""},
  };
  const std::string id = "PCI\\VEN_1DE4&DEV_0007&SUBSYS_00AB1DF4";
  for (const auto& row : rows) {
    const TempDir tree;
    const auto folder = tree.path() / "bus/pci/devices/0000:00:01.0";
    writeFile(folder / "uevent", "PCI_CLASS=28000\nPCI_ID=1DE4:0007\nPCI_SUBSYS_ID=1DF4:00AB\n");
    if (row.revision != nullptr) writeFile(folder / "revision", row.revision);
    if (!row.config.empty()) writeFile(folder / "config", row.config);
    const std::string rest =
        id + "\0PCI\\VEN_1DE4&DEV_0007&CC_028000\0PCI\\VEN_1DE4&DEV_0007&CC_0280\0\0"s;
    EXPECT_EQ(winapi::loadMachine(tree.path())->deviceProperty(0, SPDRP_HARDWAREID)->data,
              *row.ending == '\0' ? rest : id + row.ending + '\0' + rest);
  }
}

TEST(Version, Values_DecideTheAnswer) {
  const std::string key =
      "Windows Registry Editor Version 5.00\n\n"
      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion]\n";
  const auto ask = [](auto& version, DWORD size) {
    version.dwOSVersionInfoSize = size;
    return GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&version)) != FALSE;
  };
  const std::pair<const char*, const char*> rows[] = {
      {"", "0.0"},
      {"\"CurrentVersion\"=\"6.3\"\n\"CurrentMajorVersionNumber\"=dword:a\n", "10.0"},
      {"\"CurrentVersion\"=\"6.2\"\n", "6.2"},
      {"\"CurrentVersion\"=\"six\"\n", "none"},
      {"\"CurrentVersion\"=dword:6\n", "none"},
      {"\"CurrentMajorVersionNumber\"=\"10\"\n", "none"},
      {"\"CurrentVersion\"=\"6.1\"\n\"CurrentBuild\"=\"x\"\n", "none"},
  };
  const TempDir folder;
  OSVERSIONINFOEXA version{};
  for (const auto& [values, expected] : rows) {
    writeFile(folder / "m.reg", key + values);
    const Computer computer(folder / "m.reg");
    const std::string answer =
        ask(version, sizeof version)
            ? std::to_string(version.dwMajorVersion) + '.' + std::to_string(version.dwMinorVersion)
            : "none";
    EXPECT_EQ(answer, expected) << values;
  }
  EXPECT_EQ(GetLastError(), ERROR_INVALID_DATA);
  const Computer computer(fixture("machines/forms_utf8.reg"));
  EXPECT_TRUE(ask(version, sizeof version));
  EXPECT_EQ(version.dwBuildNumber, 7601U);
  EXPECT_EQ(version.wServicePackMajor, 1U);
  EXPECT_STREQ(version.szCSDVersion, "Service Pack 1");
  EXPECT_FALSE(ask(version, 100));
  OSVERSIONINFOA basic{};
  EXPECT_TRUE(ask(basic, sizeof basic));
  EXPECT_EQ(basic.dwMinorVersion, 1U);
  EXPECT_EQ(GetSystemDefaultLangID(), 0x0407);
}

TEST(Version, Verification_IsTruthfulAndForEqualityAlone) {
  const Computer computer(fixture("machines/forms_utf8.reg"));
  constexpr DWORD kBoth = VER_MAJORVERSION | VER_MINORVERSION;
  constexpr BYTE kGreaterOrEqual = 3;
  const auto errorFor = [](DWORD minorNumber, BYTE condition) {
    OSVERSIONINFOEXW wanted{};
    wanted.dwOSVersionInfoSize = sizeof wanted;
    wanted.dwMajorVersion = 6;
    wanted.dwMinorVersion = minorNumber;
    const DWORDLONG mask = VerSetConditionMask(0, kBoth, condition);
    return VerifyVersionInfoW(&wanted, kBoth, mask) != FALSE ? ERROR_SUCCESS : GetLastError();
  };
  EXPECT_EQ(errorFor(1, VER_EQUAL), ERROR_SUCCESS);
  EXPECT_EQ(errorFor(2, VER_EQUAL), ERROR_OLD_WIN_VERSION);
  EXPECT_EQ(errorFor(1, kGreaterOrEqual), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace tolvanix::test
