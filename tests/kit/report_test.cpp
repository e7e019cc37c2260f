// `tolvanixkit report`: documents of the program as tables, pages, JSON and CSV.
#include <algorithm>

#include "support/Matchers.h"
#include "support/Package.h"
#include "support/Patterns.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

// Documents in a folder of their own, which is the current one.
class Report : public ::testing::Test {
 protected:
  static ProgramResult report(Arguments arguments) {
    arguments.insert(arguments.begin(), "report");
    return runKit(arguments);
  }
  // What goes into a file, which has no form of its own for each platform.
  static std::string written(Arguments arguments) {
    arguments.insert(arguments.end(), {"-o", "out"});
    const ProgramResult result = report(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    return readFile("out");
  }

  const CurrentTempDir folder;
};

std::string listed(const std::string& name, int status, const std::string& version = "1.0.0.5") {
  return R"(<Device vendorID="1DE0" deviceID="0010" subDeviceID="0001" subVendorID="1DE0" bus="2" )"
         R"(device="31" function="1" display=")" +
         name + R"("><Application componentType="DRVR" version=")" + version +
         R"(" display="D"><Package version="1.1.0.12"/><SPStatus result=")" +
         (status == 0 ? "true" : "false") + "\">" + messageElement(status) +
         "</SPStatus></Application></Device>";
}

TEST_F(Report, Table_HasEveryKindOfDocument) {
  writeFile("pc1.xml", fixtureDocument("computers/odd_devices.xml"));
  writeFile("pc2.xml", executionDocument(listed("Card", 0) + listed("Disk", 39, "0"), 1));
  writeFile("pc3.xml", executionDocument(statusElement(34)));
  writeFile("pc4.xml", R"(<?xml version="1.0" encoding="UTF-8"?>)" + statusElement(3));
  writeFile("pc5.xml", executionDocument(""));
  const std::string table = report({"pc1.xml", "pc2.xml", "pc3.xml", "pc4.xml", "pc5.xml"}).output;
  const std::string expected =
      R"(pc2 +2:31\.1 +1DE0:0010 +Card +1\.0\.0\.5 +1\.1\.0\.12 +installed\n)"
      R"(pc2 +2:31\.1 +1DE0:0010 +Disk +none +1\.1\.0\.12 +failed \(39\): the helper pro.*\n)"
      R"(pc3 +\(one hardware ID\) +can be installed\n)"
      R"(pc4 +\(the run\) +failed \(3\): the command line has an unknown argument\n)"
      R"(pc5 +\(no device\) +nothing to install\n\n)"
      R"(5 computers, \d+ devices, 1 installed, 2 failed\.\nRestart needed: pc2\.\n$)";
  EXPECT_TRUE(isMatch(table, expected)) << table;
  EXPECT_THAT(table, StartsWith("Computer  Place "));
  EXPECT_THAT(report({"pc5.xml"}).output, Not(StartsWith("Computer")));
}

TEST_F(Report, Table_IsAlignedByWhatATerminalShows) {
  const std::string wide = "\u7DB2\u8DEF\u5361";  // three characters, six columns
  const std::string narrow = "e\u0301&#27;[31m";  // an accent of its own; no entity of ours
  writeFile("a.xml",
            executionDocument(listed(wide, 0) + listed(narrow, 0) + listed("&amp;\x1B", 0)));
  const std::string table = report({"a.xml"}).output;
  EXPECT_THAT(table, HasSubstr(wide + "      1.0.0.5"));
  EXPECT_THAT(table, HasSubstr("e\u0301&#27;[31m  1.0.0.5"));
  EXPECT_THAT(table, Not(HasSubstr("\x1B")));
}

TEST_F(Report, Csv_QuotesWhatNeedsIt) {
  writeFile("sub/a.xml", fixtureDocument("computers/four_devices.xml"));
  writeFile("a.xml", executionDocument(listed("A, &quot;B&quot;", 36, "0"), 1));
  const std::string csv = written({"--format", "csv", "a.xml", "sub/a.xml"});
  EXPECT_THAT(
      csv,
      HasSubstr("\na,2,31,1,PCI\\VEN_1DE0&DEV_0010&SUBSYS_00011DE0,\"A, \"\"B\"\"\",,,1.1.0.12,"
                "36,1\nsub/a,3,4,5,"));
}

TEST_F(Report, Json_HasWhatTheDocumentSays) {
  writeFile("a.xml", executionDocument(listed("Ger\xE4t &lt;1&gt;", 36, "0"), 1));
  const std::string json = written({"--format", "json", "a.xml"});
  EXPECT_EQ(
      json.find(R"({"computers":[
{"computer":"a","file":"a.xml","document":"execution","restartRequired":true,"exitCode":36,)"
                R"("status":null,"devices":[
{"hardwareID":"PCI\\VEN_1DE0&DEV_0010&SUBSYS_00011DE0","vendorID":"1DE0","deviceID":"0010",)"
                R"("subDeviceID":"0001","subVendorID":"1DE0","bus":2,"device":31,"function":1,)"
                "\"name\":\"Ger\u00E4t <1>\","
                R"("driverVersion":null,"firmwareVersion":null,"packageVersion":"1.1.0.12",)"
                R"("status":{"code":36,"success":false,"message":"Operation failed. Hardware)"),
      0)
      << json;
  EXPECT_THAT(json, EndsWith("}}]}]}\n"));
}

TEST_F(Report, Page_EscapesEverything) {
  writeFile("a'b.xml", executionDocument(listed("&lt;script&gt;alert(1)&lt;/script&gt;", 36), 1));
  writeFile("c.xml", executionDocument(listed("&quot; onload=&quot;x", 0, "&lt;b&gt;")));
  const std::string page = written({"--format", "html", "a'b.xml", "c.xml"});
  EXPECT_THAT(page, HasSubstr("<div>&lt;script&gt;alert(1)&lt;/script&gt;</div>"));
  EXPECT_THAT(page, HasSubstr("<div>&quot; onload=&quot;x</div>"));
  EXPECT_THAT(page, HasSubstr("<div>&lt;b&gt;</div>"));
  EXPECT_THAT(page, HasSubstr("Restart needed:</strong> a&#39;b</p>"));
  EXPECT_EQ(page.find("http"), std::string::npos) << "something would come from a network";
}

}  // namespace
}  // namespace tolvanix::test
