// `-uhid` from the command line to the helper program, on a computer with one device of the ID.
#include <gtest/gtest.h>

#include "app/Status.h"
#include "support/Helper.h"
#include "support/Package.h"
#include "text/Format.h"

namespace tolvanix::test {
namespace {

const std::string kPresent = R"(PCI\VEN_8086&DEV_1502&SUBSYS_04931028)";
const std::string kAbsent = R"(PCI\VEN_8086&DEV_FFFF&SUBSYS_04931028)";

std::string infFile(const std::string& hardwareId) {
  return formatText(
      "[Version]\r\nSignature=\"$Windows NT$\"\r\nClass=Net\r\n"
      "ClassGuid={4d36e972-e325-11ce-bfc1-08002be10318}\r\n"
      "[Manufacturer]\r\n%%Maker%%=Models,NTamd64\r\n"
      "[Models.NTamd64]\r\n%%Device%%=Install,%s\r\n"
      "[Strings]\r\nMaker=\"The maker\"\r\nDevice=\"A device\"\r\n",
      hardwareId.c_str());
}

std::string documentOf(int status, bool reboot) {
  return formatText(R"(<?xml version="1.0" encoding="UTF-8"?><SVMExecution lang="en">)"
                    R"(<SPStatus result = "%s"><Message id="%d">%s</Message></SPStatus>)"
                    "<RebootRequired>%d</RebootRequired></SVMExecution>",
                    status == kSuccess ? "true" : "false", status,
                    kStatusTexts.at(static_cast<std::size_t>(status)), reboot ? 1 : 0);
}

// The helper, unless `steps` is empty, in a folder with a blank.
struct Installation {
  const char* what;
  std::vector<std::pair<std::string, std::string>> files;
  std::string steps;
  Arguments arguments;
  int deviceStatus;
  int exitCode;
};

const std::vector<Installation> kRuns = {
    {"no INF file", {}, "", {"-w", kPresent}, -6, kNoInfFiles},
    {"the ID is in no file", {{"a.inf", infFile(kAbsent)}}, "", {"-w", kPresent}, 5, kIdInNoInf},
    {"check, in no file",
     {{"a.inf", infFile(kAbsent)}},
     "",
     {"-c", "-w", kPresent},
     4,
     kCheckedIdNotFound},
    {"check, in a file",
     {{"a.inf", infFile(kAbsent)}, {"b.inf", infFile(kPresent + "&REV_07")}},
     "",
     {"-w", kPresent + "&REV_04", "-c"},
     3,
     kCheckedIdFound},
    {"check, in another file",
     {{"a.inf", infFile(kPresent)}, {"b.inf", infFile(kAbsent)}},
     "",
     {"-w", kPresent, "-c", "-n", "b.inf"},
     4,
     kCheckedIdNotFound},
    {"the revision is cut in upper case alone",
     {{"a.inf", infFile(kPresent)}},
     "",
     {"-c", "-w", "PCI\\VEN_8086&DEV_1502&SUBSYS_04931028&rev_07"},
     9,
     kNoExistingDevice},
    {"no such device",
     {{"a.inf", infFile(kAbsent)}},
     "exit 0",
     {"-w", kAbsent},
     9,
     kNoExistingDevice},
    {"the last file is no INF file",
     {{"a.inf", infFile(kAbsent)}, {"b.inf", "text"}},
     "",
     {"-w", kPresent},
     6,
     kInfNotOpened},
    {"installed",
     {{"a.inf", infFile(kPresent)}},
     "print 4000\nexit 0",
     {"-w", kPresent},
     0,
     kSuccess},
    {"restart needed", {{"a.inf", infFile(kPresent)}}, "exit 1", {"-w", kPresent}, -2, kSuccess},
    {"helper failed", {{"a.inf", infFile(kPresent)}}, "exit 2", {"-w", kPresent}, 8, kHelperFailed},
    {"no helper", {{"a.inf", infFile(kPresent)}}, "", {"-w", kPresent}, 8, kHelperFailed},
    {"a helper that fails lets the search go on",
     {{"a.inf", infFile(kPresent)}, {"b.inf", infFile(kAbsent)}},
     "exit 77",
     {"-w", kPresent},
     5,
     kIdInNoInf},
};

TEST(HardwareId, EveryOutcome_HasItsDocumentAndExitCode) {
  const Computer computer(fixture("computers/four_devices.reg"));
  for (const Installation& run : kRuns) {
    const Package package;
    for (const auto& [name, text] : run.files) package.add(name, text);
    if (!run.steps.empty()) {
      placeHelper(package / "tolvanixhelper64/tolvanixhelper64.exe", run.steps);
    }
    Arguments arguments = {"-uhid", "-d=4", "-e", "trace.log"};
    arguments.insert(arguments.end(), run.arguments.begin(), run.arguments.end());
    const ProgramResult result = package.run(arguments, computer);
    EXPECT_EQ(result.exitCode, run.exitCode) << run.what;
    EXPECT_EQ(result.output, documentOf(run.exitCode, run.deviceStatus == -2)) << run.what;
    const std::string trace = readText(package / "trace.log");
    EXPECT_NE(trace.find(formatText("deviceStatus from DriverUpdate() = %d\n", run.deviceStatus)),
              std::string::npos)
        << run.what << '\n'
        << trace;
  }
}

// Everything of a run behind the banner, where `@` stands for the package's folder.
constexpr char kInstallationTrace[] = R"(actionUpdateHardwareID: Entered function.
DriverUpdate: Entered function.
DriverUpdate: Hardware ID = pci\ven_8086&DEV_1502&SUBSYS_04931028
DriverUpdate: check INF   = 0
DriverUpdate: INF file    = <NULL>
DriverUpdate: Found INF file = @\a.inf
Win2kInstall: Entered function.
EnumManufacturers->EnumDevices for mfg 1, The maker:Models.
EnumDevices for model, Models: no devices found.
EnumManufacturers->EnumDevices for mfg 2, The maker:Models.NTamd64.
EnumDevices for model, A device:Install
Search for HwID pci\ven_8086&DEV_1502&SUBSYS_04931028: found. i = 0
FindExistingDevice: Entered function.
FindExistingDevice: Found Hardware ID = pci\ven_8086&DEV_1502&SUBSYS_04931028. i = #
UpdateDriver: Entered function.
UpdateDriver: 64-bit helper program.
ExecCmd: @\tolvanixhelper64\tolvanixhelper64.exe "pci\ven_8086&DEV_1502&SUBSYS_04931028" "@\a.inf"
ExecCmd: Using pDir; strWorkDir = @\tolvanixhelper64
UpdateDriver: return code (0) from exec of helper program = @\tolvanixhelper64\tolvanixhelper64.exe "pci\ven_8086&DEV_1502&SUBSYS_04931028" "@\a.inf"
UpdateDriver: exit code from exec of helper program = 1
Win2kInstall: status from UpdateDriver() = 0
DriverUpdate: status from Win2kInstall() = 1
actionUpdateHardwareID: deviceStatus from DriverUpdate() = -2
actionUpdateHardwareID: mappedDeviceStatus = 0
runKiv: status from takeAction() = 0
)";

// What differs between computers and folders, in one form: the package's folder, the place of the
// device among the present ones.
std::string normalized(std::string trace) {
  const std::string mark = "Found INF file = ";
  const std::size_t start = trace.find(mark) + mark.size();
  const std::string folder = trace.substr(start, trace.find("\\a.inf", start) - start);
  for (std::size_t at = trace.find(folder); at != trace.npos; at = trace.find(folder)) {
    trace.erase(at, folder.size()).insert(at, 1, '@');
  }
  const std::string place = "04931028. i = ";
  const std::size_t number = trace.find(place) + place.size();
  trace.erase(number, trace.find('\n', number) - number).insert(number, 1, '#');
  return trace.substr(trace.find("actionUpdateHardwareID: Entered"));
}

TEST(HardwareId, Installation_TracesEveryStep) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const Package package;
  package.add("a.inf", infFile(kPresent));
  placeHelper(package / "tolvanixhelper64/tolvanixhelper64.exe", "print 10\nexit 1");
  const ProgramResult result = package.run(
      {"-uhid", "-w", R"(pci\ven_8086&DEV_1502&SUBSYS_04931028&REV_04)", "-d=4", "-e", "trace.log"},
      computer);
  EXPECT_EQ(result.output, documentOf(kSuccess, true));
  EXPECT_EQ(normalized(readText(package / "trace.log")), kInstallationTrace);
}

}  // namespace
}  // namespace tolvanix::test
