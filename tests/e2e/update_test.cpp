// `-u` with real validation libraries, on a computer with the devices 1502 and 1E03 (vendor 1DF1,
// subsystem 0493 1DF4).
#include "app/Status.h"
#include "support/Matchers.h"
#include "support/Package.h"
#include "support/Patterns.h"
#include "support/ResultDocument.h"
#include "support/Trace.h"
#include "text/Format.h"

namespace tolvanix::test {
namespace {

// One device of a validation document, and what the result document says about it.
std::string listed(const std::string& deviceId) {
  return R"(<Device bus="1" device="2" function="3" vendorID="1DF1" deviceID=")" + deviceId +
         R"(" subDeviceID="0493" subVendorID="1DF4" display="Card"><Application )"
         R"(componentType="DRVR" version="1.0" display="Card Driver"><Package version="2.0"/>)"
         "</Application></Device>";
}

std::string outcome(const std::string& deviceId, int status) {
  return R"(<Device vendorID="1DF1" deviceID=")" + deviceId +
         R"(" subDeviceID="0493" subVendorID="1DF4" bus="1" device="2" function="3" )"
         R"(display="Card"><Application componentType="DRVR" version="1.0" display="Card Driver">)"
         R"(<Package version="2.0"/><SPStatus result=")" +
         (status == 0 ? "true" : "false") + "\">" + messageElement(status) +
         "</SPStatus></Application></Device>";
}

std::string inValidation(const std::string& content) {
  return "<SVMValidation>" + content + "</SVMValidation>";
}

std::string finding(const std::string& type, const std::string& message = "m") {
  return "<Validation type=\"" + type + R"(" result="false"><Message>)" + message +
         "</Message></Validation>";
}

std::string infWith(const std::vector<std::string>& deviceIds) {
  std::vector<std::string> ids;
  for (const std::string& id : deviceIds)
    ids.push_back("PCI\\VEN_1DF1&DEV_" + id + "&SUBSYS_04931DF4");
  return infFile(ids);
}

// A package whose library returns this document.
class UpdatePackage : public Package {
 public:
  explicit UpdatePackage(const std::string& answer, const std::string& withoutExport = "") {
    add("package.xml", "<P/>");
    placeValidationLibrary(path(), answer, withoutExport);
  }

  // The trace goes to a file.
  ProgramResult update(Arguments arguments = {}) const {
    const Computer computer(fixture("computers/two_devices.reg"));
    arguments.insert(arguments.begin(), {"-u", "-e", "trace.log"});
    return run(arguments);
  }
  std::string trace(const Arguments& arguments) const {
    update(arguments);
    return readText(*this / "trace.log");
  }
};

// What becomes of a single device is the matter of the tests of -uhid.
TEST(Update, Devices_EachHasItsOutcomeAndTheFirstFailureIsTheStatus) {
  const std::string net = listed("1502");
  const std::string disk = listed("1E03");
  const std::string absent = listed("FFFF");
  const std::string netDone = outcome("1502", 0);
  const std::string diskDone = outcome("1E03", 0);
  const std::string all = infWith({"1502", "1E03", "FFFF"});
  const std::string onlyAbsent = infWith({"FFFF"});
  const std::string onlyNet = infWith({"1502"});
  const struct {
    std::string devices;
    std::string inf;     // the file a.inf
    std::string helper;  // its steps; empty for no helper program
    Arguments arguments;
    std::string outcomes;
    int status;
    int reboot;
  } rows[] = {
      {"", all, "", {}, "", 0, 0},
      {net, all, "exit 0", {}, netDone, 0, 0},
      {net, all, "exit 1", {}, netDone, 0, 1},
      {net, all, "exit 2", {}, outcome("1502", 39), 39, 0},
      {net, all, "exit 0", {"-n", "text"}, outcome("1502", 37), 37, 0},
      {net, all, "", {"-c"}, outcome("1502", 34), 34, 0},
      {net, onlyAbsent, "", {"-c", "-n", "a.inf"}, outcome("1502", 35), 35, 0},
      {net + disk, all, "exit 0", {}, netDone + diskDone, 0, 0},
      {absent + disk, onlyAbsent, "", {}, outcome("FFFF", 40) + outcome("1E03", 36), 40, 0},
      {disk + absent, onlyAbsent, "", {}, outcome("1E03", 36) + outcome("FFFF", 40), 36, 0},
      {net + disk, onlyNet, "exit 1", {}, netDone + outcome("1E03", 36), 36, 1},
      {"<Group>" + net + "</Group>", all, "exit 0", {}, netDone, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.outcomes);
    const UpdatePackage package(inValidation(row.devices));
    package.add("a.inf", row.inf);
    package.add("text", "no INF file");
    if (!row.helper.empty()) placeHelper(package / kHelperFile, row.helper);
    const ProgramResult result = package.update(row.arguments);
    EXPECT_EQ(result.exitCode, row.status);
    EXPECT_EQ(result.output, executionDocument(row.outcomes, row.reboot));
  }
}

TEST(Update, SameDeviceTwice_IsInstalledOnceAndReportedTwice) {
  const std::string content = listed("1502") + listed("1E03") + listed("FFFF") + listed("1502");
  const UpdatePackage package(inValidation(content + finding("soft", "It is &lt;newer&gt;.")));
  package.add("package.xml", "<P><Name><Display><![CDATA[Pack]]></Display></Name></P>");
  package.add("a.inf", infWith({"1502", "1E03"}));
  placeHelper(package / kHelperFile, "record args.txt\nexit 1");
  const ProgramResult result = package.update({"-d=4"});
  EXPECT_EQ(result.output, executionDocument(outcome("1502", 0) + outcome("1E03", 0) +
                                                 outcome("FFFF", 36) + outcome("1502", 0),
                                             1));
  const std::string id = "PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4\n";
  EXPECT_EQ(only(readText(package / "tolvanixhelper64/args.txt"), {"PCI"}),
            id + "PCI\\VEN_1DF1&DEV_1E03&SUBSYS_04931DF4\n");
  EXPECT_THAT(readText(package / "trace.log"),
              HasSubstr("PerformExecution: Found a device match.\n"
                        "PerformExecution: Duplicate hardware ID found = " +
                        id +
                        "PerformExecution: deviceStatus = -2\n"
                        "PerformExecution: mappedDeviceStatus = 0\n"
                        "UpdateValidatedDevices: reboot = 1\n"));
  const std::string story = package.explained(result);
  std::size_t at = 0;
  for (const std::string text :
       {"Package: Pack\n",
        "Validation library: 4 devices to update, 1 finding.\n"
        "  soft, result false: It is <newer>.\n",
        "Device 1: Card, installed 1.0, package 2.0\n  Hardware ID: PCI\\VEN_1DF1&DEV_1502",
        "1. a.inf lists the ID as \"A 100% device\", and a device with it is present; the helper "
        "program ended with code 1: the driver is installed, and the computer must be restarted.\n",
        "Device 3: Card", "1. a.inf does not list the ID.\n  Device status 5: ", "Device 4: Card",
        "This ID was handled above; the outcome is the same.\n  Device status -2: ",
        "\nThe computer must be restarted.\nThe first failure decides: device 3.\n"}) {
    at = story.find(text, at);
    ASSERT_NE(at, std::string::npos) << text << '\n' << story;
  }
}

// The weightiest finding decides, wherever it is; each step of the scan is traced.
TEST(Update, Findings_QualificationAndHardRefuse) {
  const struct {
    std::vector<std::string> types;
    const char* traced;
    int status;
  } rows[] = {
      {{"soft", "hard", "info"}, "DEP_SOFT_ERROR DEP_HARD_ERROR ", 21},
      {{"info", "soft"}, "UPGRADE_INFO DEP_SOFT_ERROR ", 0},
      {{"soft", "info", "soft"}, "DEP_SOFT_ERROR DEP_SOFT_ERROR ", 0},
      {{"info", "info"}, "UPGRADE_INFO UPGRADE_INFO ", 0},
      {{"hard", "qualification", "hard"}, "DEP_HARD_ERROR QUAL_HARD_ERROR ", 21},
      {{"hard", "soft", "hard"}, "DEP_HARD_ERROR DEP_HARD_ERROR ", 21},
      {{"qualification"}, "QUAL_HARD_ERROR ", 21},
      {{"Hard", "", "other"}, "", 0},
  };
  for (const auto& row : rows) {
    std::string document;
    for (const std::string& type : row.types) document += finding(type);
    const UpdatePackage package(inValidation(document));
    const std::string traced =
        only(package.trace({"-d=4", "-o", "out.xml"}), {"VerifyValidationXML: internal"});
    EXPECT_EQ(replaced(traced, ".* = (.*)\n", "$1 "), row.traced);
    EXPECT_EQ(readText(package / "out.xml"),
              executionDocument(row.status == 0 ? "" : statusElement(row.status)));
  }
  const UpdatePackage package(inValidation("<Device>" + finding("hard") + "</Device>"));
  const ProgramResult refused = package.update({"-d=4"});
  EXPECT_EQ(refused.exitCode, 21);
  EXPECT_THAT(package.explained(refused), HasSubstr("\n  hard, result false: m\n"));
}

TEST(Update, Library_IsCalledOnceAndGetsItsDocumentBack) {
  const UpdatePackage package(inValidation(finding("info")));
  EXPECT_EQ(package.update().exitCode, 0);
  EXPECT_EQ(readFile(package / "calls.txt"), "validate\nfree\nunloaded\n");
  const std::u16string start =
      u"<SVMInventory lang=\"en\" ><OperatingSystem osVendor=\"Microsoft\"  osArch=\"x64\"";
  EXPECT_TRUE(readFile(package / "inventory.bin").starts_with(utf16File(start).substr(2)));
}

TEST(Update, LibraryCannotBeUsed_StatusSaysWhy) {
  const struct {
    int status;
    const char* answer;
    const char* withoutExport;
    const char* calls;
    const char* said;  // by tolvanixkit
  } rows[] = {
      {18, "throw", "", "validate\nunloaded\n",
       "The trace ends after: PerformValidation: Calling SPValidate"},
      {22, "null", "", "validate\nunloaded\n", "it returned no document.\n"},
      {25, "", "SPValidate", "unloaded\n", "What to do: "},
      {26, "", "SPFreeValidationXML", "unloaded\n", "What to do: "},
  };
  for (const auto& row : rows) {
    const UpdatePackage package(row.answer, row.withoutExport);
    const ProgramResult result = package.update({"-d=4"});
    EXPECT_EQ(result.exitCode, row.status);
    EXPECT_EQ(result.output, executionDocument(statusElement(row.status)));
    EXPECT_EQ(readFile(package / "calls.txt"), row.calls);
    EXPECT_THAT(package.explained(result), HasSubstr(row.said));
  }
  EXPECT_EQ(UpdatePackage("throw at the end").update().output, executionDocument(""));
  const UpdatePackage package("");
  package.add("kivvalid.dll", "no library");
  EXPECT_EQ(package.trace({"-d=2"}), std::string("loglevel=2\nlogtarget=1\nlogpathfile=trace.log\n"
                                                 "LoadValidationLibrary: ") +
                                         kStatusTexts.at(24) + '\n');
}

// What they do not tell, where an attribute is looked for, and names with any characters.
TEST(Update, OddDevices_AreReportedWithDefaultsAndWellFormedNames) {
  const UpdatePackage package(fixtureDocument("validations/odd_devices.xml"));
  package.add("a.inf", infWith({"1502"}));
  EXPECT_EQ(package.update().output, fixtureDocument("validations/odd_devices_outcome.xml"));
  const UpdatePackage wide(
      utf16File(u"<V><Device vendorID=\"1\" display=\"\u7F51\u5361 \U0001F4BE \xD800\"/></V>"));
  EXPECT_NE(wide.update().output.find(
                "display=\"\xE7\xBD\x91\xE5\x8D\xA1 \xF0\x9F\x92\xBE \xEF\xBF\xBD\">"),
            std::string::npos);
}

TEST(Update, TenThousandDevices_AreAllReported) {
  std::string devices;
  std::string outcomes;
  for (int i = 0; i < 10000; ++i) {
    const std::string id = formatText("%04X", i);
    devices += listed(id);
    outcomes += outcome(id, 32);
  }
  const ProgramResult result = UpdatePackage(inValidation(devices)).update();
  EXPECT_EQ(result.exitCode, 32);
  EXPECT_TRUE(result.output == executionDocument(outcomes));  // too long to be printed
}

// Whatever the file holds goes to the library: the units of a UTF-16 file with its mark, else a
// unit for each byte up to the first zero.
TEST(Update, PackageFile_ReachesTheLibraryWhole) {
  const std::string large(50'000'000, 'x');  // NOLINT(bugprone-string-constructor): meant so
  const std::pair<std::string, std::string> rows[] = {
      {"", ""},
      {"\xFF\xFE", "\xFF\xFE"},
      {"\xE9<", {"\xE9\0<\0", 4}},
      {{"\xFF\xFE\x51\x7FP\0>", 7}, {"\xFF\xFE\x51\x7FP\0", 6}},
      {{"a\0b", 3}, {"a\0", 2}},
  };
  for (const auto& [file, given] : rows) {
    const UpdatePackage package(inValidation(""));
    package.add("other.xml", file);
    EXPECT_EQ(package.update({"-p", "other.xml"}).output, executionDocument(""));
    EXPECT_EQ(readFile(package / "package.bin"), given);
  }
  const UpdatePackage package(inValidation(""));
  package.add("package.xml", large);
  EXPECT_EQ(package.update().exitCode, 0);
  EXPECT_EQ(readFile(package / "package.bin").size(), 2 * large.size());
}

// From the library to the end, as level 4 traces it; level 2 has nothing of it.
TEST(Update, Trace_TellsEachStep) {
  const UpdatePackage package(inValidation(listed("1502")));
  package.add("package.xml",
              "<P><Name>n<Display><![CDATA[ Pack & go ]]></Display></Name><Name/></P>");
  const std::string header = "logtarget=1\nlogpathfile=trace.log\n";
  EXPECT_EQ(package.trace({"-d=2"}), "loglevel=2\n" + header);
  EXPECT_EQ(package.trace({}), "loglevel=0\n" + header);
  EXPECT_EQ(only(package.trace({"-d=4"}),
                 {"LoadV", "CIni", "action", "Perform", "Verify", "converted wchar P", "P><Name",
                  "converted wchar V", "<SVMV", "Update", "runKiv", "FreeV", "Unload"}),
            readText(fixture("traces/update.txt")));
}

}  // namespace
}  // namespace tolvanix::test
