// What tolvanixkit cannot use is one line on standard error and exit code 2.
#include <algorithm>
#include <utility>

#include "app/Status.h"
#include "support/Matchers.h"
#include "support/Package.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

void expectComplaint(const Arguments& arguments, const std::string& complaint) {
  const ProgramResult result = runKit(arguments);
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors, HasSubstr(complaint));
  EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
}

// A description of a package that lists so many devices.
std::string description(int count) {
  std::string devices;
  for (int i = 0; i < count; ++i) devices += "<Device/>";
  return "<Package version=\"1\"><SupportedDevices>" + devices + "</SupportedDevices></Package>";
}

TEST(BadInput, File_IsOneLine) {
  const CurrentTempDir folder;
  const std::string header = "loglevel=4\nlogtarget=1\nlogpathfile=t\n";
  const std::string head = header + "**** tolvanix: Debugging\n";
  const std::string trace = head + "runKiv: status from takeAction() = 39\n";
  const std::string begun = R"(<?xml version="1.0" encoding="UTF-8"?><SVMExecution lang="en">)";
  const std::string traced = "PerformExecution: Checking for a device match.\n";
  const std::string document = executionDocument(statusElement(39));
  std::string devices = begun;
  for (int i = 0; i < 100'001; ++i) devices += "<Device ></Device>";
  const struct {
    Arguments arguments;
    std::vector<std::pair<std::string, std::string>> rows;  // the file's bytes, the complaint
  } tables[] = {
      {{"explain", "file", "result"},
       {{"", "the file is empty"},
        {"text\n", "this is no trace"},
        {{"\0\xFF\n\r", 4}, "this is no trace"},
        {head, "the trace is cut off"},
        {trace.substr(0, trace.size() - 1), "the trace is cut off"},
        {trace.substr(0, trace.size() - 2) + '\n', "of different runs"},
        {std::string("loglevel=2\nLoadValidationLibrary: ").append(kStatusTexts[23]), "of level 2"},
        {"loglevel=4\nlogtarget=2\nlogpathfile=t\n", "the trace went elsewhere"},
        {"**** tolvanix: Debugging\n<?xml version=\"1.0\"?>\n", "are mixed"}}},
      {{"report", "file"},
       {{"", "file: the file is empty"},
        {"text", "file: this is no XML document"},
        {"<a/>", "file: this is no result document of tolvanix"},
        {document.substr(0, document.size() - 5), "file: the document is cut off"},
        {begun + "<Device ><Device ></Device>" + document.substr(begun.size()), "is damaged"},
        {begun + traced + document.substr(begun.size()), "file: the document is damaged"},
        {document + "<x/>", "cut off"},
        {devices + "</SVMExecution>", "it lists more than 100000 devices"},
        {std::string(100, '<'), "no result document"}}},
      {{"check", "package"},
       {{"text", "tolvanixkit: package.xml: this is not XML\n"},
        {description(1'000'000), "tolvanixkit: package.xml: the file is too large\n"},
        {description(10'001), "tolvanixkit: package.xml: it lists more than 10000 devices\n"}}},
  };
  writeFile("result", document);
  for (const auto& [arguments, rows] : tables) {
    for (const auto& [bytes, complaint] : rows) {
      writeFile("file", bytes);
      writeFile("package/package.xml", bytes);
      expectComplaint(arguments, complaint);
    }
  }
}

TEST(BadInput, Arguments_AreOneLine) {
  const CurrentTempDir folder;
  const std::string trace = "**** tolvanix: Debugging\nrunKiv: status from takeAction() = 39\n";
  writeFile("trace", "loglevel=4\nlogtarget=1\nlogpathfile=t\n" + trace);
  writeFile("document", executionDocument(""));
  const std::pair<Arguments, std::string> rows[] = {
      {{"explain"}, ""},
      {{"explain", "none"}, ""},
      {{"explain", "."}, ""},
      {{"explain", "trace", "none"}, ""},
      {{"explain", "trace", "trace"}, ""},
      {{"report"}, ""},
      {{"report", "none.xml"}, ""},
      {{"report", "."}, ""},
      {{"report", "document", "--format", "x"}, ""},
      {{"report", "document", "-o", "."}, ""},
      {{"check", "trace"}, "tolvanixkit: trace: this is no folder\n"},
      {{"check", "none"}, "tolvanixkit: none: this is no folder\n"},
      {{"check", ".", "--library", "trace"}, "--library requires COMPUTER (see --help)\n"},
  };
  for (const auto& [arguments, complaint] : rows) expectComplaint(arguments, complaint);
}

}  // namespace
}  // namespace tolvanix::test
