// `tolvanixkit report`: documents of the program as tables, pages, JSON and CSV.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "support/Package.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

// Documents in a folder of their own, which is the current one.
class Report : public ::testing::Test {
 protected:
  static ProgramResult report(Arguments arguments) {
    arguments.insert(arguments.begin(), "report");
    return runProgram(TOLVANIX_KIT, arguments);
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
  EXPECT_TRUE(std::regex_search(table, std::regex(expected))) << table;
  EXPECT_TRUE(table.starts_with("Computer  Place ")) << table;
  EXPECT_FALSE(report({"pc5.xml"}).output.starts_with("Computer"));
}

TEST_F(Report, Table_IsAlignedByWhatATerminalShows) {
  const std::string wide = "\u7DB2\u8DEF\u5361";  // three characters, six columns
  const std::string narrow = "e\u0301&#27;[31m";  // an accent of its own; no entity of ours
  writeFile("a.xml",
            executionDocument(listed(wide, 0) + listed(narrow, 0) + listed("&amp;\x1B", 0)));
  const std::string table = report({"a.xml"}).output;
  EXPECT_NE(table.find(wide + "      1.0.0.5"), std::string::npos) << table;
  EXPECT_NE(table.find("e\u0301&#27;[31m  1.0.0.5"), std::string::npos) << table;
  EXPECT_EQ(table.find('\x1B'), std::string::npos);
}

TEST_F(Report, Csv_QuotesWhatNeedsIt) {
  writeFile("sub/a.xml", fixtureDocument("computers/four_devices.xml"));
  writeFile("a.xml", executionDocument(listed("A, &quot;B&quot;", 36, "0"), 1));
  const std::string csv = written({"--format", "csv", "a.xml", "sub/a.xml"});
  EXPECT_NE(
      csv.find("\na,2,31,1,PCI\\VEN_1DE0&DEV_0010&SUBSYS_00011DE0,\"A, \"\"B\"\"\",,,1.1.0.12,"
               "36,1\nsub/a,3,4,5,"),
      std::string::npos)
      << csv;
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
  EXPECT_TRUE(json.ends_with("}}]}]}\n")) << json;
}

TEST_F(Report, Page_EscapesEverything) {
  writeFile("a'b.xml", executionDocument(listed("&lt;script&gt;alert(1)&lt;/script&gt;", 36), 1));
  writeFile("c.xml", executionDocument(listed("&quot; onload=&quot;x", 0, "&lt;b&gt;")));
  const std::string page = written({"--format", "html", "a'b.xml", "c.xml"});
  EXPECT_NE(page.find("<div>&lt;script&gt;alert(1)&lt;/script&gt;</div>"), std::string::npos);
  EXPECT_NE(page.find("<div>&quot; onload=&quot;x</div>"), std::string::npos);
  EXPECT_NE(page.find("<div>&lt;b&gt;</div>"), std::string::npos);
  EXPECT_NE(page.find("Restart needed:</strong> a&#39;b</p>"), std::string::npos);
  EXPECT_EQ(page.find("http"), std::string::npos) << "something would come from a network";
}

TEST_F(Report, BadInput_IsOneLine) {
  const std::string whole = executionDocument(listed("A", 0) + listed("B", 0));
  const std::string cut = whole.substr(0, whole.size() - 5);
  std::string gap = whole;
  gap.erase(gap.find("</Device>"), 9);
  std::string traced = whole;
  traced.insert(traced.find("<Device"), "PerformExecution: Checking for a device match.\n");
  const std::pair<std::string, std::string> files[] = {
      {"", "the file is empty"},
      {"text", "this is no XML document"},
      {"<a/>", "this is no result document of tolvanix"},
      {cut, "the document is cut off"},
      {gap, "the document is damaged"},
      {traced, "the document is damaged"},
      {whole + "<x/>", "cut off"},
      {std::string(100, '<'), "no result document"},
  };
  for (const auto& [bytes, complaint] : files) {
    writeFile("a.xml", bytes);
    const ProgramResult result = report({"a.xml"});
    EXPECT_EQ(result.exitCode, 2) << bytes;
    EXPECT_EQ(result.errors.find("tolvanixkit: a.xml: "), 0) << result.errors;
    EXPECT_NE(result.errors.find(complaint), std::string::npos) << result.errors;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    EXPECT_EQ(result.output, "");
  }
  writeFile("a.xml", whole);
  for (const Arguments& arguments : std::vector<Arguments>{
           {}, {"none.xml"}, {"."}, {"a.xml", "--format", "x"}, {"a.xml", "-o", "."}}) {
    const ProgramResult result = report(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
}

}  // namespace
}  // namespace tolvanix::test
