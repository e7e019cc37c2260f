// The helper program for package authors, by itself and run by the program.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

const std::string kId = "PCI\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4";
const std::string kClassKey =
    "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\Class\\"
    "{4d36e97d-e325-11ce-bfc1-08002be10318}\\0003";

// A computer with a device that has a driver, and one that has none.
std::string registryExport(const std::string& lineEnd) {
  std::string text =
      "Windows Registry Editor Version 5.00\n\n"
      "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\VEN_1DE4&DEV_0C01\\1]\n"
      "\"HardwareID\"=\"PCI\\\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4\"\n"
      "\"LocationInformation\"=\"PCI bus 1, device 2, function 3\"\n"
      "\"Driver\"=\"{4D36E97D-e325-11ce-bfc1-08002be10318}\\\\0003\"\n\n"
      "[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\VEN_1DE4&DEV_0C02\\1]\n"
      "\"HardwareID\"=\"PCI\\\\VEN_1DE4&DEV_0C02&SUBSYS_00021DE4\"\n\n"
      "[" +
      kClassKey + "]\n\"DriverVersion\"=\"1.0.0.1\"";
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += lineEnd.size()) {
    text.replace(at, 1, lineEnd);
  }
  return text;
}

std::string inUtf16(const std::string& text) {
  return utf16File(std::u16string(text.begin(), text.end()));
}

std::string infFile(const std::string& driverVersion) {
  return "[Version]\nSignature=\"$Windows NT$\"\nClass=System\n"
         "ClassGuid={4d36e97d-e325-11ce-bfc1-08002be10318}\n" +
         driverVersion + "\n[Manufacturer]\nMaker=Models\n[Models]\nDevice=Install," + kId + "\n";
}

TEST(HelperProgram, Installation_AddsTheVersionToTheRegistryExport) {
  const struct {
    std::string before;
    std::string added;
  } rows[] = {
      {registryExport("\n"), "\n\n[KEY]\n\"DriverVersion\"=\"2.3.4.5\"\n"},
      {inUtf16(registryExport("\r\n")), "\r\n\r\n[KEY]\r\n\"DriverVersion\"=\"2.3.4.5\"\r\n"},
  };
  for (const auto& row : rows) {
    const Package package;
    package.addCopy("tolvanixhelper64/tolvanixhelper64.exe", TOLVANIX_HELPER);
    package.add("device.inf", infFile("DriverVer = 01/02/2024, 2.3.4.5 ; a comment"));
    package.add("machine.reg", row.before);
    const auto run = [&package](Arguments arguments) {
      ProgramCall call = package.call(std::move(arguments));
      call.environment["TOLVANIX_MACHINE"] = (package / "machine.reg").string();
      return runProgram(call);
    };
    const ProgramResult installed = run({"-uhid", "-w", kId});
    EXPECT_EQ(installed.exitCode, 0) << installed.output << installed.errors;
    EXPECT_NE(installed.output.find("<RebootRequired>0</RebootRequired>"), std::string::npos);
    EXPECT_NE(run({"-i"}).output.find("version=\"2.3.4.5\""), std::string::npos);

    const std::string after = readFile(package / "machine.reg");
    ASSERT_EQ(after.substr(0, row.before.size()), row.before);
    std::string added = row.added;
    // In the letter case of the device's own text.
    std::string key = kClassKey;
    key.replace(key.find("{4d36e97d"), 9, "{4D36E97D");
    added.replace(added.find("KEY"), 3, key);
    if (row.before.starts_with("\xFF\xFE")) added = inUtf16(added).substr(2);
    EXPECT_EQ(after.substr(row.before.size()), added);

    EXPECT_EQ(run({"-uhid", "-w", kId}).exitCode, 0);
    EXPECT_EQ(readFile(package / "machine.reg"), after);
  }
}

TEST(HelperProgram, Failures_HaveAnExitCodeEachAndChangeNothing) {
  const TempDir dir;
  const std::string machine = (dir / "machine.reg").string();
  writeFile(machine, registryExport("\n"));
  writeFile(dir / "good.inf", infFile("DriverVer=01/02/2024,2.3.4.5"));
  writeFile(dir / "date.inf", infFile("DriverVer=01/02/2024"));
  writeFile(dir / "text.inf", infFile("DriverVer=01/02/2024,\"1\"\"]\""));
  const auto inf = [&dir](const char* name) { return (dir / name).string(); };
  const struct {
    std::string machine;
    Arguments arguments;
    int exitCode;
  } rows[] = {
      {"", {kId, inf("good.inf")}, 2},
      {dir.path().string(), {kId, inf("good.inf")}, 2},
      {inf("none.reg"), {kId, inf("good.inf")}, 2},
      {machine, {kId}, 3},
      {machine, {kId, inf("none.inf")}, 4},
      {machine, {kId, inf("date.inf")}, 4},
      {machine, {kId, inf("text.inf")}, 4},
      {machine, {"PCI\\VEN_1DE4&DEV_0C01", inf("good.inf")}, 5},
      {machine, {"PCI\\VEN_1DE4&DEV_0C02&SUBSYS_00021DE4", inf("good.inf")}, 5},
  };
  for (const auto& row : rows) {
    ProgramCall call{.program = TOLVANIX_HELPER, .arguments = row.arguments};
    call.environment["TOLVANIX_MACHINE"] = row.machine;
    const ProgramResult result = runProgram(call);
    EXPECT_EQ(result.exitCode, row.exitCode) << result.errors;
    EXPECT_NE(result.errors, "");
  }
  EXPECT_EQ(readFile(machine), registryExport("\n"));
}

}  // namespace
}  // namespace tolvanix::test
