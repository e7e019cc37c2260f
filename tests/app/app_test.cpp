#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "app/Status.h"
#include "app/XMLWriter.h"
#include "support/Files.h"
#include "support/Trace.h"

namespace tolvanix::test {
namespace {

TEST(Status, EveryNumber_HasItsText) {
  std::istringstream texts(readText(fixture("messages.txt")));
  const XMLWriter writer;
  for (int status = 0; status < kStatusCount; ++status) {
    std::string expected;
    std::getline(texts, expected);
    EXPECT_EQ(writer.getMessage(status), expected);
  }
  EXPECT_EQ(writer.getMessage(-1), nullptr);
  EXPECT_EQ(writer.getMessage(kStatusCount), nullptr);
}

TEST(XMLWriter, RemoveOSElement_TakesTheFirstWholeOne) {
  const struct {
    std::string text;
    int result;
    std::string left;
  } rows[] = {
      {"x<OperatingSystem a=\"1\" ></OperatingSystem>y", 1, "xy"},
      {"x<OperatingSystem>y", 0, "x<OperatingSystem>y"},
      {"</OperatingSystem><OperatingSystem>", 0, "</OperatingSystem><OperatingSystem>"},
      {"plain", 2, "plain"},
      {"<OperatingSystem></OperatingSystem>-<OperatingSystem/>", 1, "-<OperatingSystem/>"},
  };
  const std::string place = "removeOSElementFromXMLString: ";
  const std::string last[] = {"Error: End string for the element not found.\n",
                              "rightLen = ", "Element name not found.\n"};
  const CurrentTempDir folder;
  for (const auto& row : rows) {
    std::string text = row.text;
    const std::string trace = traceOf(
        [&] { EXPECT_EQ(XMLWriter::removeOSElementFromXMLString(text), row.result) << row.text; });
    EXPECT_EQ(text, row.left);
    EXPECT_EQ(trace.rfind(place), trace.find(place + last[row.result])) << trace;
  }
}

TEST(XMLWriter, FileThatIsNoLongerThere_TakesNoFragment) {
  const CurrentTempDir folder;
  XMLWriter writer;
  writer.setOutputFileName("none/out.xml");
  EXPECT_EQ(traceOf([&writer] { writer.writeXMLDeclaration(); }),
            "XMLWriter::print: failed to open xml file none/out.xml.\n");
}

}  // namespace
}  // namespace tolvanix::test
