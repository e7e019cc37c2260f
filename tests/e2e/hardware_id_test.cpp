// `-uhid` from the command line to the helper program, on a computer with one device of the ID.
#include <fstream>
#include <map>
#include <set>

#include "app/Status.h"
#include "support/Matchers.h"
#include "support/Package.h"
#include "support/Patterns.h"
#include "support/ResultDocument.h"
#include "text/Format.h"

namespace tolvanix::test {
namespace {

const std::string kPresent = R"(PCI\VEN_1DF1&DEV_1502&SUBSYS_04931DF4)";
const std::string kAbsent = R"(PCI\VEN_1DF1&DEV_FFFF&SUBSYS_04931DF4)";

const std::string kOfFile = "DriverUpdate: status from Win2kInstall() = ";

// What is traced last of a search, and what tolvanixkit says of it, by the device status.
const std::map<int, std::pair<std::string, std::string>> kEnds = {
    {-6, {"DriverUpdate: No INF files found.\n", ""}},
    {-2, {kOfFile + "1\n", "\nThe computer must be restarted.\n"}},
    {0, {kOfFile + "0\n", "ended with code 0: the driver is installed.\n"}},
    {3,
     {kOfFile + "3\nDriverUpdate: Found hardware ID in INF file\n",
      "1. a.inf does not list the ID.\n    2. b.inf lists the ID as \"A 100% device\", and a "
      "device with it is present.\n"}},
    {4,
     {kOfFile + "4\nDriverUpdate: Did not find hardware ID in any INF files.\n",
      "inf does not list the ID.\n"}},
    {5,
     {"Win2kInstall: Hardware ID not found in INF file.\n" + kOfFile + "5\n",
      "inf does not list the ID.\n"}},
    {6, {kOfFile + "6\n", "inf was not opened: "}},
    {8,
     {"Win2kInstall: error status from UpdateDriver() = #\n" + kOfFile + "8\n",
      "the helper program "}},
    {9,
     {"Win2kInstall: Could not find existing device.\n" + kOfFile + "9\n",
      "but no present device has it.\n"}},
};

TEST(HardwareId, EveryOutcome_HasItsDocumentAndExitCode) {
  using Files = std::vector<std::pair<std::string, std::string>>;
  const std::string has = infFile({kPresent});
  const std::string hasNot = infFile({kAbsent});
  const Files present = {{"a.inf", has}};
  const Files absent = {{"a.inf", hasNot}};
  const Files second = {{"a.inf", hasNot}, {"b.inf", has}};
  const Files both = {{"a.inf", has}, {"b.inf", hasNot}};
  const struct {
    const char* what;
    Files files;
    std::string helper;  // its steps; empty for no helper program
    Arguments arguments;
    int deviceStatus;
    int exitCode;
  } rows[] = {
      {"no INF file", {}, "", {kPresent}, -6, kNoInfFiles},
      {"in no file", absent, "", {kPresent}, 5, kIdInNoInf},
      {"check, in no file", absent, "", {kPresent, "-c"}, 4, kCheckedIdNotFound},
      {"check, in a file", second, "", {kPresent + "&REV_04", "-c"}, 3, kCheckedIdFound},
      {"check, in another", both, "", {kPresent, "-c", "-n", "b.inf"}, 4, kCheckedIdNotFound},
      {"revision in lower case", present, "", {kPresent + "&rev_07", "-c"}, 9, kNoExistingDevice},
      {"no such device", absent, "exit 0", {kAbsent}, 9, kNoExistingDevice},
      {"part of an ID", present, "exit 0", {kPresent.substr(0, 30)}, 9, kNoExistingDevice},
      {"no text", present, "exit 0", {""}, 9, kNoExistingDevice},
      {"no INF file at last", {{"a.inf", has}, {"b.inf", "x"}}, "", {kPresent}, 6, kInfNotOpened},
      {"folder", {{"a.inf/x", ""}}, "", {kPresent}, 6, kInfNotOpened},
      {"only in a folder", {{"a/a.inf", has}}, "", {kPresent, "-n", "a/a.inf"}, 6, kInfNotOpened},
      {"installed", present, "print 4000\nexit 0", {kPresent}, 0, kSuccess},
      {"restart needed", present, "exit 1", {kPresent}, -2, kSuccess},
      {"helper failed", present, "exit 2", {kPresent}, 8, kHelperFailed},
      {"a file goes meanwhile", both, "remove ../b.inf\nexit 2", {kPresent}, 6, kInfNotOpened},
      {"no helper", present, "", {kPresent}, 8, kHelperFailed},
      {"search goes on after a failure", both, "exit 77", {kPresent}, 5, kIdInNoInf},
      {"and ends with a success", both, "exit 0", {kPresent}, 0, kSuccess},
  };
  const Computer computer(fixture("computers/four_devices.reg"));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const Package package;
    for (const auto& [name, text] : row.files) package.add(name, text);
    if (!row.helper.empty()) placeHelper(package / kHelperFile, row.helper);
    Arguments arguments = {"-uhid", "-d=4", "-e", "trace.log", "-w"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const ProgramResult result = package.run(arguments);
    EXPECT_EQ(result.exitCode, row.exitCode);
    EXPECT_EQ(result.output,
              executionDocument(statusElement(row.exitCode), row.deviceStatus == -2 ? 1 : 0));
    const std::string trace =
        replaced(readText(package / "trace.log"), "(status from Upd.*) = .*", "$1 = #");
    const auto& [traced, said] = kEnds.at(row.deviceStatus);
    const auto status = std::to_string(row.deviceStatus);
    EXPECT_THAT(trace, HasSubstr(traced +
                                 "actionUpdateHardwareID: deviceStatus from "
                                 "DriverUpdate() = " +
                                 status + '\n'));
    const std::string story = package.explained(result);
    EXPECT_THAT(story, HasSubstr(said));
    EXPECT_THAT(story, HasSubstr("\n  Device status " + status + ": "));
    if (row.arguments.size() > 2) {
      EXPECT_THAT(story, HasSubstr("Only this file (-n): " + row.arguments.back() + '\n'));
    }
    if (row.deviceStatus != 8) continue;
    const bool started = !row.helper.empty();
    EXPECT_EQ(trace.find("\nDevHelper, ExecCmd, line = ") == std::string::npos, started);
    EXPECT_THAT(story,
                HasSubstr(started ? "with code 2, which is a failure.\n" : "was not started: "));
  }
}

TEST(HardwareId, ProcessThatTheHelperLeaves_DoesNotKeepTheDocumentOpen) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const Package package;
  package.add("a.inf", infFile({kPresent}));
  placeHelper(package / kHelperFile, "linger go");
  const ProgramResult result = package.run({"-uhid", "-w", kPresent});
  EXPECT_EQ(result.output, executionDocument(statusElement(kSuccess)));
  EXPECT_TRUE(releaseHelper(package / kHelperFile, "go")) << "the document ended with the process";
}

// The first lines of the files say which IDs they list and which they lack. No device of these IDs
// is present, so what is found leads to that status.
TEST(HardwareId, Search_LooksWhereverAnIdMayStand) {
  const std::filesystem::directory_iterator folder(fixture("inf_searches"));
  int asked = 0;
  for (const auto& file : std::set<std::filesystem::path>(begin(folder), end(folder))) {
    const Package package;
    package.add("a.inf", readFile(file));
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line) && line.starts_with("; l"); ++asked) {
      const int status = line.starts_with("; lists ") ? kNoExistingDevice : kCheckedIdNotFound;
      EXPECT_EQ(package.run({"-uhid", "-c", "-w", line.substr(8)}).exitCode, status)
          << file << line;
    }
  }
  EXPECT_EQ(asked, 26);
}

// What differs between computers and folders, in one form: the package's folder is `@`, the place
// of the device among the present ones `#`.
std::string normalized(std::string trace) {
  trace = replaced(trace, R"([^ "]*\\tolvanix-\d+)", "@");
  trace = replaced(trace, "(04931DF4\\. i = )\\d+", "$1#");
  return trace.substr(trace.find("actionUpdateHardwareID: Entered"));
}

TEST(HardwareId, Installation_TracesEveryStepAndGivesTheHelperIdAndFile) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const Package package;
  package.add("a.inf", infFile({kAbsent, "USB\\2," + kPresent}));
  placeHelper(package / kHelperFile, "record args.txt\nprint 10\nexit 1");
  const ProgramResult result =
      package.run({"-uhid", "-w", R"(pci\ven_1df1&DEV_1502&SUBSYS_04931DF4&REV_04)", "-d=4", "-e",
                   "trace.log"});
  EXPECT_EQ(result.output, executionDocument(statusElement(kSuccess), 1));
  EXPECT_EQ(normalized(readText(package / "trace.log")),
            readText(fixture("traces/installation.txt")));
  const std::string given = readText(package / "tolvanixhelper64/args.txt");
  EXPECT_THAT(given, StartsWith("pci\\ven_1df1&DEV_1502&SUBSYS_04931DF4\n"));
  EXPECT_THAT(given, HasSubstr("\\a.inf\n"));
  EXPECT_THAT(given, EndsWith("tolvanixhelper64\n"));
}

}  // namespace
}  // namespace tolvanix::test
