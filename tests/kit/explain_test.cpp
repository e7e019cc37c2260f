// `tolvanixkit explain`: traces of real runs, and traces that no run of this program leaves.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "app/Status.h"
#include "support/Package.h"
#include "support/ResultDocument.h"
#include "text/Format.h"

namespace tolvanix::test {
namespace {

const std::string kNet = R"(PCI\VEN_1DF1&DEV_1502&SUBSYS_04931DF4)";
const std::string kAbsent = R"(PCI\VEN_1DF1&DEV_FFFF&SUBSYS_04931DF4)";
constexpr char kHelper[] = "tolvanixhelper64/tolvanixhelper64.exe";

ProgramResult explain(Arguments arguments) {
  arguments.insert(arguments.begin(), "explain");
  return runProgram(TOLVANIX_KIT, arguments);
}

std::string lastLine(const std::string& text) {
  const std::string lines = text.substr(0, text.size() - 1);
  return lines.substr(lines.rfind('\n') + 1);
}

std::size_t lineCount(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::string exitLine(int code) {
  return formatText("Exit code %d: ", code);
}

class ExplainedPackage : public Package {
 public:
  // What is said about such a run; with its document, which must agree.
  std::string explained(Arguments arguments, int exitCode) const {
    arguments.insert(arguments.end(), {"-d=4", "-e", "trace.log", "-o", "out.xml"});
    EXPECT_EQ(run(arguments).exitCode, exitCode);
    const ProgramResult result =
        explain({(*this / "trace.log").string(), (*this / "out.xml").string()});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(lastLine(result.output).find(exitLine(exitCode)), 0) << result.output;
    return result.output;
  }
};

TEST(Explain, HardwareId_HasEachFileAndWhatBecameOfIt) {
  using Files = std::vector<std::pair<std::string, std::string>>;
  const std::string has = infFile({kNet});
  const std::string hasNot = infFile({kAbsent});
  const struct {
    Files files;
    std::string helper;  // its steps; empty for no helper program
    Arguments arguments;
    int deviceStatus;
    int exitCode;
    std::string said;
  } rows[] = {
      {{}, "", {kNet}, -6, 32, ""},
      {{{"a.inf", hasNot}}, "", {kNet}, 5, 36, "1. a.inf does not list the ID.\n"},
      {{{"a.inf", hasNot}}, "", {kNet, "-c"}, 4, 35, "1. a.inf does not list the ID.\n"},
      {{{"a.inf", hasNot}, {"b.inf", has}},
       "",
       {kNet, "-c"},
       3,
       34,
       "1. a.inf does not list the ID.\n    2. b.inf lists the ID as \"A 100% device\", and a "
       "device with it is present.\n"},
      {{{"a.inf", hasNot}}, "", {kAbsent}, 9, 40, "but no present device has it.\n"},
      {{{"a.inf", "x"}}, "", {kNet}, 6, 37, "1. a.inf was not opened: it "},
      {{{"a.inf", has}, {"b.inf", hasNot}},
       "",
       {kNet, "-n", "b.inf"},
       5,
       36,
       "Only this file (-n): b.inf\n"},
      {{{"a.inf", has}}, "exit 0", {kNet}, 0, 0, "ended with code 0: the driver is installed.\n"},
      {{{"a.inf", has}}, "exit 1", {kNet}, -2, 0, "\nThe computer must be restarted.\n"},
      {{{"a.inf", has}}, "exit 77", {kNet}, 8, 39, "ended with code 77, which is a failure.\n"},
      {{{"a.inf", has}}, "", {kNet}, 8, 39, "the helper program was not started: "},
  };
  const Computer computer(fixture("computers/four_devices.reg"));
  for (const auto& row : rows) {
    const ExplainedPackage package;
    for (const auto& [name, text] : row.files) package.add(name, text);
    if (!row.helper.empty()) placeHelper(package / kHelper, row.helper);
    Arguments arguments = {"-uhid", "-w"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const std::string story = package.explained(arguments, row.exitCode);
    EXPECT_NE(story.find(row.said), std::string::npos) << row.said << '\n' << story;
    EXPECT_NE(story.find(formatText("\n  Device status %d: ", row.deviceStatus)), std::string::npos)
        << story;
  }
}

TEST(Explain, Update_HasWhatTheLibraryFoundAndEveryDevice) {
  const Computer computer(fixture("computers/two_devices.reg"));
  const ExplainedPackage package;
  package.add("package.xml", "<P><Name><Display><![CDATA[Pack]]></Display></Name></P>");
  const auto listed = [](const std::string& id) {
    return R"(<Device bus="1" device="2" function="3" vendorID="1DF1" deviceID=")" + id +
           R"(" subDeviceID="0493" subVendorID="1DF4" display="Card )" + id +
           R"("><Application componentType="DRVR" version="1.0" display="D"><Package )"
           R"(version="2.0"/></Application></Device>)";
  };
  const std::string finding =
      R"(<Validation type="soft" result="true"><Message>It is &lt;newer&gt;.</Message>)"
      "</Validation>";
  placeValidationLibrary(package.path(), "<V>\n" + listed("1502") + listed("FFFF") +
                                             listed("1502") + finding + "</V>");
  package.add("a.inf", infFile({kNet}));
  placeHelper(package / kHelper, "exit 1");
  const std::string story = package.explained({"-u"}, kIdInNoInf);
  const std::string installed =
      "1. a.inf lists the ID as \"A 100% device\", and a device with it is present; the helper "
      "program ended with code 1: the driver is installed, and the computer must be restarted.\n";
  const std::string expected[] = {
      "Package: Pack\n",
      "Validation library: 3 devices to update, 1 finding.\n  soft, result true: It is <newer>.\n",
      "Device 1: Card 1502, installed 1.0, package 2.0\n  Hardware ID: " + kNet + '\n',
      installed,
      "Device 2: Card FFFF",
      "1. a.inf does not list the ID.\n  Device status 5: ",
      "Device 3: Card 1502",
      "This ID was handled above; the outcome is the same.\n  Device status -2: ",
      "\nThe computer must be restarted.\nThe first failure decides: device 2.\nExit code 36: ",
  };
  std::size_t at = 0;
  for (const std::string& text : expected) {
    const std::size_t found = story.find(text, at);
    ASSERT_NE(found, std::string::npos) << text << '\n' << story;
    at = found;
  }
}

TEST(Explain, RunsThatEndEarly_HaveTheirReason) {
  const Computer computer(fixture("computers/two_devices.reg"));
  const struct {
    std::string answer;  // of the library; empty for none
    std::string withoutExport;
    Arguments arguments;
    int exitCode;
    std::string said;
  } rows[] = {
      {R"(<V><Validation type="hard" result="false"><Message>Too old.</Message></Validation></V>)",
       "",
       {"-u"},
       21,
       "  hard, result false: Too old.\n"},
      {"null", "", {"-u"}, 22, "it returned no document.\n"},
      {"", "", {"-u"}, 23, "tolvanix -u: "},
      {"null", "SPValidate", {"-u"}, 25, "What to do: "},
      {"null", "SPFreeValidationXML", {"-u"}, 26, "What to do: "},
      {"throw", "", {"-u"}, 18, "The trace ends after: PerformValidation: Calling SPValidate"},
      {"", "", {"-u", "-p", "none.xml"}, 16, "What to do: "},
      {"", "", {"-u", "-n", "none.inf"}, 15, "What to do: "},
      {"", "", {"-uhid"}, 11, "What to do: "},
      {"", "", {"-i"}, 0, " PCI devices, 2 left out by DriverConfiguration.ini.\n"},
  };
  for (const auto& row : rows) {
    const ExplainedPackage package;
    package.add("package.xml", "<P/>");
    package.add("DriverConfiguration.ini", "[A]\nVendorID=1DF1\n");
    if (!row.answer.empty()) {
      placeValidationLibrary(package.path(), row.answer, row.withoutExport);
    }
    const std::string story = package.explained(row.arguments, row.exitCode);
    EXPECT_NE(story.find(row.said), std::string::npos) << row.said << '\n' << story;
  }
}

TEST(Explain, BadInput_IsOneLine) {
  const CurrentTempDir folder;
  const std::string head = "loglevel=4\nlogtarget=1\nlogpathfile=t\n**** tolvanix: Debugging\n";
  const std::string trace = head + "runKiv: status from takeAction() = 39\n";
  const std::string refusal = "LoadValidationLibrary: ";
  const std::pair<std::string, std::string> files[] = {
      {"", "the file is empty"},
      {"text\n", "this is no trace"},
      {std::string("\0\xFF\n\r", 4), "this is no trace"},
      {head, "the trace is cut off"},
      {trace.substr(0, trace.size() - 1), "the trace is cut off"},
      {trace.substr(0, trace.size() - 2) + '\n', "of different runs"},
      {"loglevel=2\n" + refusal + kStatusTexts[kValidationLibraryNotFound], "of level 2"},
      {"loglevel=4\nlogtarget=2\nlogpathfile=t\n", "the trace went elsewhere"},
      {"**** tolvanix: Debugging\n<?xml version=\"1.0\"?>\n", "are mixed"},
  };
  writeFile("result", executionDocument(statusElement(39)));
  for (const auto& [bytes, complaint] : files) {
    writeFile("trace", bytes);
    const ProgramResult result = explain({"trace", "result"});
    EXPECT_EQ(result.exitCode, 2) << bytes;
    EXPECT_NE(result.errors.find(complaint), std::string::npos) << result.errors;
    EXPECT_EQ(lineCount(result.errors), 1) << result.errors;
    EXPECT_EQ(result.output, "");
  }
  writeFile("trace", trace);
  for (const Arguments& arguments :
       std::vector<Arguments>{{}, {"none"}, {"."}, {"trace", "none"}, {"trace", "trace"}}) {
    const ProgramResult result = explain(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(lineCount(result.errors), 1) << result.errors;
  }
}

}  // namespace
}  // namespace tolvanix::test
