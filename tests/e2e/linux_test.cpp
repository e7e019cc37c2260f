// Whole runs that only Linux can have: on computers that files describe well or badly, with devices
// that refuse every byte, in any locale.
#include <gtest/gtest.h>

#include "support/Package.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

TEST(RegistryExport, EveryEncodingAndForm_CountsAsItIsAfterAnImport) {
  const std::pair<std::string, std::string> rows[] = {{"forms_utf16", "forms"},
                                                      {"forms_utf8", "forms"},
                                                      {"forms_utf8_bom", "forms"},
                                                      {"forms_regedit4", "forms"},
                                                      {"import_rules", "import_rules"}};
  for (const auto& [computer, document] : rows) {
    EXPECT_EQ(Package().run({"-i"}, Computer(fixture("machines/" + computer + ".reg"))).output,
              fixtureDocument("machines/" + document + ".xml"));
  }
}

TEST(RegistryExport, Unusable_IsOneLineAndNoDevices) {
  const std::string header = "Windows Registry Editor Version 5.00\n\n";
  const std::string device =
      header + "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\A\\1]\n\"HardwareID\"=";
  const std::pair<std::string, const char*> rows[] = {
      {"", "1: the file is empty\n"},
      {"PCI 1\n", "1: this is no header of a registry export\n"},
      {std::string(5000, '\xA5'), "1: this is no header of a registry export\n"},
      {"\xFE\xFF", "1: this is no header of a registry export\n"},
      {utf16File(u"REGEDIT4\n\n") + "x", "3: the file ends in half a UTF-16 unit\n"},
      {header + "hello\n", "3: this is neither a key nor a value\n"},
      {header + '\0', "3: this is neither a key nor a value\n"},
      {header + "[HKEY_LOCAL_MACHINE\\SY", "3: the key has no closing bracket\n"},
      {header + "[]\n", "3: the key has no name\n"},
      {header + "[a] b\n", "3: there is text behind the key\n"},
      {header + "\"a\"=\"b\"\n", "3: this value stands before the first key\n"},
      {device, "4: this is no form of data\n"},
      {device + "1\n", "4: this is no form of data\n"},
      {device + "\"PCI\n\n", "4: the text has no closing quote\n"},
      {device + "\"PCI\"x\n", "4: there is text behind the value\n"},
      {device + "hex(7):50,00,\\", "4: the value ends in the middle\n"},
      {device + "hex(7):50,00,\\\n", "5: a byte is missing in the value\n"},
      {device + "hex(7):50,00,\n", "4: a byte is missing in the value\n"},
      {device + "hex(7:50\n", "4: the type of the value is not followed by \"):\"\n"},
      {device + "dword:123456789\n", "4: one to eight hexadecimal digits needed\n"},
      {header + "[a]\n\"b\"\n", "4: the value's name is not followed by an equals sign\n"},
  };
  const Package package;
  const auto complaintAbout = [&package](const std::string& name) {
    const Computer computer(package / name);
    const ProgramResult run = package.run({"-i"}, computer);
    EXPECT_EQ(run.output,
              R"(<?xml version="1.0" encoding="UTF-8"?><SVMInventory lang="en" ></SVMInventory>)");
    const std::string start = "tolvanix: " + (package / name).string() + ":";
    EXPECT_TRUE(run.errors.starts_with(start)) << run.errors;
    return run.errors.substr(start.size());
  };
  for (const auto& [bytes, complaint] : rows) {
    package.add("m.reg", bytes);
    EXPECT_EQ(complaintAbout("m.reg"), complaint);
  }
  EXPECT_EQ(complaintAbout("none.reg"), " No such file or directory\n");
}

TEST(FullDevice, FragmentsAreLostAndTheStatusStays) {
  const Package package;
  const ProgramResult run = package.run({"-uhid", "-o", "/dev/full", "-d=4", "-e", "trace.log"});
  EXPECT_EQ(run.exitCode, 11);
  EXPECT_EQ(run.output, "");
  EXPECT_NE(readText(package / "trace.log")
                .find("XMLWriter::print: failed to write xml file /dev/full.\n"),
            std::string::npos);
  ProgramCall call = package.call({"-uhid"});
  call.outputDevice = "/dev/full";
  EXPECT_EQ(runProgram(call).exitCode, 11);
}

// A "\\" in a name is part of it for the C library, and a folder's end for the platform's search.
TEST(HardwareId, NamedInfThatTheSearchDoesNotFind_IsReported) {
  const Package package;
  package.add("a\\b.inf", "");
  const ProgramResult run = package.run({"-uhid", "-w", "PCI\\VEN_8086", "-n", "a\\b.inf"});
  EXPECT_EQ(run.exitCode, 31);
}

TEST(Locale, AnyLocale_GivesTheSameBytes) {
  const Package package;
  const Computer computer(fixture("computers/four_devices.reg"));
  ProgramCall call = package.call({"-i", "-d=4"});
  call.environment = computer.environment();
  const std::string expected = runProgram(call).output;
  for (const char* locale : {"C", "C.UTF-8", "de_DE.UTF-8", "ja_JP.SJIS", "none"}) {
    call.environment["LC_ALL"] = locale;
    EXPECT_EQ(runProgram(call).output, expected);
  }
}

}  // namespace
}  // namespace tolvanix::test
