// The presented computer: names and versions.
#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "winapi/posix/kernel32.h"
#include "winapi/posix/machine/IndirectText.h"
#include "winapi/posix/machine/PciIds.h"

namespace tolvanix::test {
namespace {

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

TEST(PciIds, Name_IsOfTheSubsystemElseOfTheDevice) {
  const TempDir folder;
  const auto file = folder / "pci.ids";
  writeFile(file,
            "# comment\n\n1de4  Vendor\n\t0001  First\n# 1de5  note\n\t0002  Second\n"
            "\t\t1028 00ab  Board of second\n# note\n\t\t1028 00ac  Other board\n\t0004  Fourth\n"
            "1de9  Late vendor\n\t0001  Late device\n1df0  Last\n\t0009  Last device\n"
            "C 02  Class\n\t0003  No device\n\t0009  Unended");
  winapi::PciIds names{winapi::MappedFile(file.c_str())};
  EXPECT_EQ(names.name(0x1DE4, 2, 0x1028, 0xAC), "Other board");
  EXPECT_EQ(names.name(0x1DE4, 2, 0x1028, 0xAD), "Second");
  EXPECT_EQ(names.name(0x1DE4, 1, 0x1028, 0xAB), "First");
  EXPECT_EQ(names.name(0x1DE9, 1, 0, 0), "Late device");
  EXPECT_EQ(names.name(0x1DF0, 9, 0, 0), "Last device");
  EXPECT_EQ(names.name(0x1DE4, 3, 0, 0), "");
  EXPECT_EQ(names.name(0x1DF0, 3, 0, 0), "");
  EXPECT_EQ(winapi::PciIds(winapi::MappedFile("/no/such/list")).name(1, 1, 0, 0), "");
}

// As long as the real list is, in sections and lines of many lengths.
TEST(PciIds, EveryEntryOfALongList_IsFound) {
  std::ostringstream list;
  const auto line = [&list](const std::string& indent, unsigned id, const std::string& name) {
    list << indent << std::hex << std::setw(4) << std::setfill('0') << id << "  " << name << '\n';
  };
  const auto nameOf = [](unsigned vendor, unsigned device) {
    return std::string(1 + (vendor * 7 + device * 13) % 90, 'n') + std::to_string(device);
  };
  const auto devicesOf = [](unsigned vendor) { return vendor % 50 == 0 ? 900U : vendor % 9; };
  constexpr unsigned kVendors = 400;
  for (unsigned vendor = 1; vendor <= kVendors; ++vendor) {
    line("", vendor * 3, "Vendor");
    for (unsigned device = 0; device < devicesOf(vendor); ++device) {
      line("\t", device * 2, nameOf(vendor, device));
      if (device % 4 == 0) line("\t\t1028 ", device, "Board");
    }
  }
  const TempDir folder;
  writeFile(folder / "pci.ids", list.str());
  winapi::PciIds names{winapi::MappedFile((folder / "pci.ids").c_str())};
  const auto found = [&names](unsigned vendor, unsigned device) {
    return names.name(static_cast<std::uint16_t>(vendor), static_cast<std::uint16_t>(device), 0, 0);
  };
  for (unsigned vendor = 1; vendor <= kVendors; ++vendor) {
    for (unsigned device = 0; device < devicesOf(vendor); ++device) {
      ASSERT_EQ(found(vendor * 3, device * 2), nameOf(vendor, device)) << vendor;
      ASSERT_EQ(found(vendor * 3, device * 2 + 1), "") << vendor;
    }
    ASSERT_EQ(found(vendor * 3 + 1, 0), "");
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
