// The helper program for package authors, by itself and run by the program.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

const std::string kId = "PCI\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4";
// A computer with a device that has a driver, and one that has none; and what an installation adds.
const std::string kExport = R"(Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI\VEN_1DE4&DEV_0C01\1]
"HardwareID"="PCI\\VEN_1DE4&DEV_0C01&SUBSYS_00011DE4"
"Driver"="{4D36E97D-e325-11ce-bfc1-08002be10318}\\0003"

[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\PCI\VEN_1DE4&DEV_0C02\1]
"HardwareID"="PCI\\VEN_1DE4&DEV_0C02&SUBSYS_00021DE4"

[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class\{4d36e97d-e325-11ce-bfc1-08002be10318}\0003]
"DriverVersion"="1.0.0.1")";
// The key is in the letter case of the device's own text.
const std::string kAdded = R"(

[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Class\{4D36E97D-e325-11ce-bfc1-08002be10318}\0003]
"DriverVersion"="2.3.4.5"
)";

std::string inUtf16(std::string text) {
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.insert(at, "\r");
  }
  return utf16File(std::u16string(text.begin(), text.end()));
}

TEST(HelperProgram, Installation_AddsTheVersionToTheRegistryExport) {
  const std::pair<std::string, std::string> rows[] = {
      {kExport, kAdded}, {inUtf16(kExport), inUtf16(kAdded).substr(2)}};
  for (const auto& [before, added] : rows) {
    const Package package;
    package.addCopy("tolvanixhelper64/tolvanixhelper64.exe", TOLVANIX_HELPER);
    package.add("device.inf", infFile({kId}, "DriverVer = 01/02/2024, 2.3.4.5 ; a comment"));
    package.add("machine.reg", before);
    const auto run = [&package](Arguments arguments) {
      ProgramCall call = package.call(std::move(arguments));
      call.environment["TOLVANIX_MACHINE"] = (package / "machine.reg").string();
      return runProgram(call);
    };
    const ProgramResult installed = run({"-uhid", "-w", kId});
    EXPECT_EQ(installed.exitCode, 0) << installed.output << installed.errors;
    EXPECT_NE(installed.output.find("<RebootRequired>0</RebootRequired>"), std::string::npos);
    EXPECT_NE(run({"-i"}).output.find("version=\"2.3.4.5\""), std::string::npos);

    EXPECT_EQ(readFile(package / "machine.reg"), before + added);
    EXPECT_EQ(run({"-uhid", "-w", kId}).exitCode, 0);
    EXPECT_EQ(readFile(package / "machine.reg"), before + added);
  }
}

TEST(HelperProgram, Failures_HaveAnExitCodeEachAndChangeNothing) {
  const TempDir dir;
  const std::string machine = (dir / "machine.reg").string();
  writeFile(machine, kExport);
  writeFile(dir / "good.inf", infFile({kId}, "DriverVer=01/02/2024,2.3.4.5"));
  writeFile(dir / "date.inf", infFile({kId}, "DriverVer=01/02/2024"));
  writeFile(dir / "text.inf", infFile({kId}, "DriverVer=01/02/2024,\"1\"\"]\""));
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
  EXPECT_EQ(readFile(machine), kExport);
}

}  // namespace
}  // namespace tolvanix::test
