// `-u` with real validation libraries, on a computer with the devices 1502 and 1E03 (vendor 8086,
// subsystem 0493 1028).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>

#include "support/Helper.h"
#include "support/Package.h"
#include "support/ValidationLibrary.h"

namespace tolvanix::test {
namespace {

const std::map<int, std::string> kMessages = {
    {0, "Operation successful."},
    {21, "Operation failed. An unspecified error occurred while performing validation."},
    {22, "Operation failed. A null pointer was returned while performing validation."},
    {24,
     "The update failed because the program could not load the following DLL file: kivvalid.dll"},
    {25,
     "The update failed because the program could not get the address of the following function: "
     "SPValidate"},
    {26,
     "The update failed because the program could not get the address of the following function: "
     "SPFreeValidationXML"},
    {32, "Operation failed. No INF files could be found."},
    {34, "Hardware ID check was performed. The hardware ID was found in an INF file."},
    {35, "Hardware ID check was performed. The hardware ID was not found in an INF file."},
    {36,
     "Operation failed. Hardware ID not found in any of the .INF files. Contact Tarvek Support."},
    {37, "Operation failed. Unable to open any .INF file."},
    {39, "Operation failed.  TolvanixHelper failed to complete update."},
    {40, "Operation failed.  Cannot find existing device for a discovered Hardware id."},
};

std::string message(int status) {
  return "<Message id=\"" + std::to_string(status) + "\">" + kMessages.at(status) + "</Message>";
}

std::string execution(const std::string& content, int reboot = 0) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><SVMExecution lang="en">)" + content +
         "<RebootRequired>" + std::to_string(reboot) + "</RebootRequired></SVMExecution>";
}

std::string refusal(int status) {
  return execution(R"(<SPStatus result = "false">)" + message(status) + "</SPStatus>");
}

// One device of a validation document, and what the result document says about it.
std::string listed(const std::string& deviceId, const std::string& name = "Card") {
  return R"(<Device bus="1" device="2" function="3" vendorID="8086" deviceID=")" + deviceId +
         R"(" subDeviceID="0493" subVendorID="1028" display=")" + name +
         R"("><Application componentType="DRVR" version="1.0" display=")" + name +
         R"( Driver"><Package version="2.0"/></Application></Device>)";
}

std::string outcome(const std::string& deviceId, int status, const std::string& name = "Card") {
  return R"(<Device vendorID="8086" deviceID=")" + deviceId +
         R"(" subDeviceID="0493" subVendorID="1028" bus="1" device="2" function="3" display=")" +
         name + R"("><Application componentType="DRVR" version="1.0" display=")" + name +
         R"( Driver"><Package version="2.0"/><SPStatus result=")" +
         (status == 0 ? "true" : "false") + "\">" + message(status) +
         "</SPStatus></Application></Device>";
}

std::string inValidation(const std::string& content) {
  return "<SVMValidation>" + content + "</SVMValidation>";
}

std::string finding(const std::string& type) {
  return "<Validation type=\"" + type + R"(" result="false"><Message>m</Message></Validation>)";
}

std::string infWith(const std::vector<std::string>& deviceIds) {
  std::string text =
      "[Version]\nSignature=\"$Windows NT$\"\nClass=Net\n"
      "ClassGuid={4d36e972-e325-11ce-bfc1-08002be10318}\n"
      "[Manufacturer]\nMaker=Models\n[Models]\n";
  for (const std::string& id : deviceIds) {
    text.append("Card=Install,PCI\\VEN_8086&DEV_").append(id).append("&SUBSYS_04931028\n");
  }
  return text;
}

// The lines of a trace that tell one of these things.
std::string only(const std::string& trace, const std::vector<std::string>& beginnings) {
  std::istringstream in(trace);
  std::string kept;
  for (std::string line; std::getline(in, line);) {
    const bool keep = std::any_of(beginnings.begin(), beginnings.end(),
                                  [&line](const auto& b) { return line.starts_with(b); });
    if (keep) kept += line + '\n';
  }
  return kept;
}

// A package whose library answers this document.
class UpdatePackage : public Package {
 public:
  explicit UpdatePackage(const std::string& answer, Exports exports = Exports::kBoth) {
    add("package.xml", "<P/>");
    placeValidationLibrary(path(), answer, exports);
  }

  ProgramResult update(Arguments arguments = {}) const {
    const Computer computer(fixture("computers/two_devices.reg"));
    arguments.insert(arguments.begin(), "-u");
    return run(std::move(arguments), computer);
  }
  // The trace of a run, apart from its document.
  std::string trace(Arguments arguments) const {
    arguments.insert(arguments.end(), {"-e", "trace.log"});
    update(std::move(arguments));
    return readText(*this / "trace.log");
  }
};

TEST(Update, Devices_EachHasItsOutcomeAndTheFirstFailureIsTheStatus) {
  struct Row {
    std::string devices;
    std::map<std::string, std::string> infFiles;
    std::string helper;  // its steps; empty for no helper program
    Arguments arguments;
    std::string outcomes;
    int status;
    int reboot;
  };
  const std::string net = listed("1502");
  const std::string disk = listed("1E03");
  const std::string absent = listed("FFFF");
  const std::string netDone = outcome("1502", 0);
  const std::string diskDone = outcome("1E03", 0);
  const std::map<std::string, std::string> all{{"a.inf", infWith({"1502", "1E03", "FFFF"})}};
  const std::map<std::string, std::string> onlyDisk{{"a.inf", infWith({"1E03"})}};
  const std::map<std::string, std::string> onlyAbsent{{"a.inf", infWith({"FFFF"})}};
  const std::map<std::string, std::string> onlyNet{{"a.inf", infWith({"1502"})}, {"b.inf", "none"}};
  const Row rows[] = {
      {"", all, "", {}, "", 0, 0},
      {net, all, "exit 0", {}, netDone, 0, 0},
      {net, all, "exit 1", {}, netDone, 0, 1},
      {net, all, "exit 2", {}, outcome("1502", 39), 39, 0},
      {net, all, "", {}, outcome("1502", 39), 39, 0},
      {net, {}, "exit 0", {}, outcome("1502", 32), 32, 0},
      {net, onlyDisk, "exit 0", {}, outcome("1502", 36), 36, 0},
      {net, onlyNet, "exit 0", {}, netDone, 0, 0},
      {net, onlyNet, "exit 0", {"-n", "b.inf"}, outcome("1502", 37), 37, 0},
      {absent, all, "exit 0", {}, outcome("FFFF", 40), 40, 0},
      {net, all, "", {"-c"}, outcome("1502", 34), 34, 0},
      {net, onlyDisk, "", {"-c", "-n", "a.inf"}, outcome("1502", 35), 35, 0},
      {net + disk, all, "exit 0", {}, netDone + diskDone, 0, 0},
      {absent + disk, onlyAbsent, "", {}, outcome("FFFF", 40) + outcome("1E03", 36), 40, 0},
      {disk + absent, onlyAbsent, "", {}, outcome("1E03", 36) + outcome("FFFF", 40), 36, 0},
      // Installed with a restart, then one that fails.
      {net + disk,
       {{"a.inf", infWith({"1502"})}},
       "exit 1",
       {},
       netDone + outcome("1E03", 36),
       36,
       1},
      {"<Group>" + net + "</Group>", all, "exit 0", {}, netDone, 0, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.outcomes);
    const UpdatePackage package(inValidation(row.devices));
    for (const auto& [name, text] : row.infFiles) package.add(name, text);
    if (!row.helper.empty()) {
      placeHelper(package / "tolvanixhelper64/tolvanixhelper64.exe", row.helper);
    }
    const ProgramResult result = package.update(row.arguments);
    EXPECT_EQ(result.exitCode, row.status);
    EXPECT_EQ(result.output, execution(row.outcomes, row.reboot));
  }
}

TEST(Update, SameDeviceTwice_IsInstalledOnceAndReportedTwice) {
  const UpdatePackage package(inValidation(listed("1502") + listed("1E03") + listed("1502")));
  package.add("a.inf", infWith({"1502", "1E03"}));
  const auto helper = package / "tolvanixhelper64/tolvanixhelper64.exe";
  placeHelper(helper, "record args.txt\nexit 1");
  const std::string trace = package.trace({"-d=4", "-o", "out.xml"});
  EXPECT_EQ(readText(package / "out.xml"),
            execution(outcome("1502", 0) + outcome("1E03", 0) + outcome("1502", 0), 1));
  EXPECT_EQ(only(readText(helper.parent_path() / "args.txt"), {"PCI"}),
            "PCI\\VEN_8086&DEV_1502&SUBSYS_04931028\nPCI\\VEN_8086&DEV_1E03&SUBSYS_04931028\n");
  EXPECT_NE(trace.find("PerformExecution: Found a device match.\n"
                       "PerformExecution: Duplicate hardware ID found = "
                       "PCI\\VEN_8086&DEV_1502&SUBSYS_04931028\n"
                       "PerformExecution: deviceStatus = -2\n"
                       "PerformExecution: mappedDeviceStatus = 0\n"
                       "UpdateValidatedDevices: reboot = 1\n"),
            std::string::npos);
}

// The weightiest finding decides; each step of the scan is traced.
TEST(Update, Findings_QualificationAndHardRefuse) {
  const std::map<std::string, std::string> names = {{"qualification", "QUAL_HARD_ERROR"},
                                                    {"hard", "DEP_HARD_ERROR"},
                                                    {"soft", "DEP_SOFT_ERROR"},
                                                    {"info", "UPGRADE_INFO"}};
  struct Row {
    std::vector<std::string> types;
    std::vector<std::string> traced;
    int status;
  };
  const Row rows[] = {
      {{}, {}, 0},
      {{"soft", "hard", "info"}, {"soft", "hard"}, 21},
      {{"info", "soft"}, {"info", "soft"}, 0},
      {{"soft", "info", "soft"}, {"soft", "soft"}, 0},
      {{"info", "info"}, {"info", "info"}, 0},
      {{"hard", "qualification", "hard"}, {"hard", "qualification"}, 21},
      {{"hard", "soft", "hard"}, {"hard", "hard"}, 21},
      {{"qualification"}, {"qualification"}, 21},
      {{"Hard", "", "other"}, {}, 0},
  };
  for (const Row& row : rows) {
    std::string document;
    for (const std::string& type : row.types) document += finding(type);
    std::string expected;
    for (const std::string& type : row.traced) {
      expected += "VerifyValidationXML: internal valStatus = " + names.at(type) + '\n';
    }
    const UpdatePackage package(inValidation(document));
    const ProgramResult result = package.update({"-d=4", "-e", "trace.log"});
    EXPECT_EQ(only(readText(package / "trace.log"), {"VerifyValidationXML: internal"}), expected);
    EXPECT_EQ(result.exitCode, row.status) << document;
    EXPECT_EQ(result.output, row.status == 0 ? execution("") : refusal(row.status));
  }
}

// A finding counts wherever it stands, also inside a device.
TEST(Update, FindingInsideADevice_Refuses) {
  const UpdatePackage package(inValidation("<Device>" + finding("hard") + "</Device>"));
  EXPECT_EQ(package.update().output, refusal(21));
}

TEST(Update, Library_IsCalledOnceAndGetsItsDocumentBack) {
  const UpdatePackage package(inValidation(finding("info")));
  package.add("package.xml", utf16File(u"<P n=\"\u7F51\u5361\"/>"));
  EXPECT_EQ(package.update().exitCode, 0);
  EXPECT_EQ(readFile(package / "calls.txt"), "validate\nfree\nunloaded\n");
  EXPECT_EQ(readFile(package / "package.bin"), readFile(package / "package.xml"));
  const std::string inventory = readFile(package / "inventory.bin");
  EXPECT_NE(inventory.find(utf16File(u"<OperatingSystem osVendor=\"Microsoft\" ").substr(2)),
            std::string::npos);
}

TEST(Update, LibraryCannotBeUsed_StatusSaysWhy) {
  struct Row {
    int status;
    Exports exports;
    std::string calls;
  };
  for (const Row& row : {Row{22, Exports::kBoth, "validate\nunloaded\n"},
                         Row{25, Exports::kWithoutValidate, "unloaded\n"},
                         Row{26, Exports::kWithoutFree, "unloaded\n"}}) {
    const UpdatePackage package("null", row.exports);
    const ProgramResult result = package.update();
    EXPECT_EQ(result.exitCode, row.status);
    EXPECT_EQ(result.output, refusal(row.status));
    EXPECT_EQ(readFile(package / "calls.txt"), row.calls);
  }
  const UpdatePackage package("null");
  const std::string whole = readFile(package / "kivvalid.dll");
  for (const std::string& library :
       {std::string("no library"), std::string(), foreignLibrary(), whole.substr(0, 512)}) {
    package.add("kivvalid.dll", library);
    EXPECT_EQ(package.update({"-d=2", "-e", "trace.log"}).output, refusal(24));
    EXPECT_EQ(readText(package / "trace.log"),
              "loglevel=2\nlogtarget=1\nlogpathfile=trace.log\n"
              "LoadValidationLibrary: " +
                  kMessages.at(24) + '\n');
  }
  EXPECT_FALSE(exists(package / "calls.txt"));
}

// Documents that hold nothing to do, or nothing that can be read.
TEST(Update, DocumentWithoutDevices_DoesNothing) {
  for (const std::string& document :
       {std::string(), std::string("no document"), std::string("<Devices/>"),
        std::string("<Device"), std::string("\xFF\xFE\x3C", 3), std::string(100, '<')}) {
    const UpdatePackage package(document);
    const ProgramResult result = package.update();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, execution(""));
  }
}

TEST(Update, DeviceThatTellsLittle_IsReportedWithTheDefaults) {
  const auto reported = [](const std::string& identifiers, const std::string& application) {
    return "<Device " + identifiers + R"( bus="-1" device="-1" function="-1" display="">)" +
           application + R"(<SPStatus result="false">)" + message(36) +
           "</SPStatus></Application></Device>";
  };
  const std::string none =
      R"(vendorID="FFFFFFFF" deviceID="FFFFFFFF" subDeviceID="FFFFFFFF" subVendorID="FFFFFFFF")";
  const std::string empty =
      R"(<Application componentType="" version="" display=""><Package version=""/>)";
  const UpdatePackage package(inValidation(
      "<Device/>"
      R"(<Device vendorID="G" deviceID="" subDeviceID="-" subVendorID="{"/>)"
      R"(<Device vendorID="12345678" deviceID="abc" subDeviceID="0" subVendorID="1"/>)"
      R"(<Device><Application><Package version="1"/><Package version="3"/></Application></Device>)"));
  package.add("a.inf", infWith({"1502"}));
  EXPECT_EQ(package.update().output,
            execution(reported(none, empty) + reported(none, empty) +
                      reported(R"(vendorID="12345678" deviceID="0ABC" subDeviceID="0000")"
                               R"( subVendorID="0001")",
                               empty) +
                      // An attribute that a start tag lacks is taken from further on.
                      reported(none, R"(<Application componentType="" version="1" display="">)"
                                     R"(<Package version="3"/>)")));
}

TEST(Update, Names_AreWellFormedWhateverTheyHold) {
  struct Row {
    std::string answered;  // in the library's document
    std::string reported;
  };
  const Row rows[] = {
      {"A &amp; B &lt;x&gt;", "A &amp; B &lt;x&gt;"},
      {"A & B", "A &amp; B"},
      {"it&apos;s &quot;it&quot;", "it&apos;s &quot;it&quot;"},
      {"100 %s%n &#38;", "100 %s%n &amp;#38;"},
      {"Intel\xC2\xAE X710", "Intel\xC2\xAE X710"},
      {"\xE7\xBD\x91\xE5\x8D\xA1", "\xE7\xBD\x91\xE5\x8D\xA1"},
      {"a\x01z\xFF", "a\xEF\xBF\xBDz\xC3\xBF"},
  };
  std::string devices;
  std::string outcomes;
  for (const Row& row : rows) {
    devices += listed("1502", row.answered);
    outcomes += outcome("1502", 32, row.reported);
  }
  EXPECT_EQ(UpdatePackage(inValidation(devices)).update().output, execution(outcomes));
  const UpdatePackage wide(
      utf16File(u"<V><Device vendorID=\"1\" display=\"\u7F51\u5361 \U0001F4BE \xD800\"/></V>"));
  EXPECT_NE(wide.update().output.find(
                "display=\"\xE7\xBD\x91\xE5\x8D\xA1 \xF0\x9F\x92\xBE \xEF\xBF\xBD\">"),
            std::string::npos);
}

TEST(Update, TenThousandDevices_AreAllReported) {
  std::string devices;
  std::string outcomes;
  char id[8];
  for (int i = 0; i < 10000; ++i) {
    std::snprintf(id, sizeof id, "%04X", i);
    devices += listed(id);
    outcomes += outcome(id, 32);
  }
  const UpdatePackage package(inValidation(devices));
  const ProgramResult result = package.update();
  EXPECT_EQ(result.exitCode, 32);
  EXPECT_TRUE(result.output == execution(outcomes));  // too long to be printed
}

// Whatever the file holds goes to the library: the units of a UTF-16 file with its mark, else a
// unit for each byte up to the first zero.
TEST(Update, PackageFile_ReachesTheLibraryWhole) {
  const std::string large(50'000'000, 'x');  // NOLINT(bugprone-string-constructor): meant so
  struct Row {
    std::string file;
    std::string given;
  };
  for (const Row& row :
       {Row{"", ""}, Row{"\xFF\xFE", "\xFF\xFE"}, Row{"\xE9<", {"\xE9\0<\0", 4}},
        Row{{"\xFF\xFE<\0P\0>", 7}, {"\xFF\xFE<\0P\0", 6}}, Row{{"a\0b", 3}, {"a\0", 2}}}) {
    const UpdatePackage package(inValidation(""));
    package.add("other.xml", row.file);
    EXPECT_EQ(package.update({"-p", "other.xml"}).output, execution(""));
    EXPECT_EQ(readFile(package / "package.bin"), row.given);
  }
  const UpdatePackage package(inValidation(""));
  package.add("package.xml", large);
  EXPECT_EQ(package.update().exitCode, 0);
  EXPECT_EQ(readFile(package / "package.bin").size(), 2 * large.size());
}

// From the library to the end, as level 4 tells it; level 2 has nothing of it.
TEST(Update, Trace_TellsEachStep) {
  const std::string document = inValidation(listed("1502"));
  const UpdatePackage package(document);
  const std::string text = "<P><Name>n<Display><![CDATA[ Pack & go ]]></Display></Name><Name/></P>";
  package.add("package.xml", text);
  const std::string header = "logtarget=1\nlogpathfile=trace.log\n";
  EXPECT_EQ(package.trace({"-d=2"}), "loglevel=2\n" + header);
  EXPECT_EQ(package.trace({}), "loglevel=0\n" + header);
  EXPECT_EQ(
      only(package.trace({"-d=4"}), {"LoadV", "action", "Perform", "Verify", "converted wchar P",
                                     "converted wchar V", "Update", "runKiv", "FreeV", "Unload"}),
      "LoadValidationLibrary: Loading the validation DLL and getting proc addresses.\n"
      "actionUpdateApplicableDevices: Entered function.\n"
      "actionUpdateApplicableDevices: status from GetInventory() = 0\n"
      "PerformValidation: Entered function.\n"
      "PerformValidation: sPkgDescription.data() = Pack & go\n"
      "PerformValidation: package XML length = " +
          std::to_string(text.size()) +
          "\n"
          "converted wchar Package XML is:\n"
          "PerformValidation: Calling SPValidate function.\n"
          "VerifyValidationXML: Entered function.\n"
          "VerifyValidationXML: validation XML length = " +
          std::to_string(document.size()) +
          "\n"
          "converted wchar Validation XML is:\n"
          "VerifyValidationXML: Checking validation XML.\n"
          "PerformValidation: status from VerifyValidationXML = 0\n"
          "actionUpdateApplicableDevices: status from PerformValidation() = 0\n"
          "PerformExecution: Entered function.\n"
          "PerformExecution: About to create spXML object.\n"
          "PerformExecution: Checking for a device match.\n"
          "PerformExecution: VendorID    = 0x8086\n"
          "PerformExecution: DeviceID    = 0x1502\n"
          "PerformExecution: SubVendorID = 0x1028\n"
          "PerformExecution: SubDeviceID = 0x0493\n"
          "PerformExecution: Found a device match.\n"
          "PerformExecution: deviceStatus from DriverUpdate() = -6\n"
          "PerformExecution: mappedDeviceStatus = 32\n"
          "UpdateValidatedDevices: reboot = 0\n"
          "actionUpdateApplicableDevices: status from PerformExecution = 32\n"
          "runKiv: status from takeAction() = 32\n"
          "FreeValidationXML: Freeing validation XML.\n"
          "UnloadValidationLibrary: Unloading the validation DLL.\n");
}

}  // namespace
}  // namespace tolvanix::test
