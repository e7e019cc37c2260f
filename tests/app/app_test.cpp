#include "app/Status.h"
#include "app/XMLWriter.h"
#include "support/Files.h"
#include "support/Matchers.h"
#include "support/Trace.h"

namespace tolvanix::test {
namespace {

TEST(Status, EveryNumber_HasItsText) {
  const XMLWriter writer;
  std::string texts;
  for (int status = 0; status < kStatusCount; ++status) {
    texts.append(writer.getMessage(status)) += '\n';
  }
  EXPECT_EQ(texts, readText(fixture("messages.txt")));
  EXPECT_EQ(writer.getMessage(-1), nullptr);
  EXPECT_EQ(writer.getMessage(kStatusCount), nullptr);
}

constexpr char kNoEnd[] = "Error: End string for the element not found.";

TEST(XMLWriter, RemoveOSElement_TakesTheFirstWholeOne) {
  const struct {
    std::string text;
    int result;
    std::string left;
    const char* traced;  // at last
  } rows[] = {
      {"x<OperatingSystem a=\"1\" ></OperatingSystem>y", 1, "xy", "rightLen = 1"},
      {"x<OperatingSystem>y", 0, "x<OperatingSystem>y", kNoEnd},
      {"</OperatingSystem><OperatingSystem>", 0, "</OperatingSystem><OperatingSystem>", kNoEnd},
      {"plain", 2, "plain", "Element name not found."},
      {"<OperatingSystem></OperatingSystem>-<OperatingSystem/>", 1, "-<OperatingSystem/>",
       "rightLen = 19"},
  };
  const CurrentTempDir folder;
  for (const auto& row : rows) {
    std::string text = row.text;
    int result = -1;
    const std::string trace =
        traceOf([&] { result = XMLWriter::removeOSElementFromXMLString(text); });
    EXPECT_EQ(result, row.result) << row.text;
    EXPECT_EQ(text, row.left);
    EXPECT_THAT(trace, EndsWith("removeOSElementFromXMLString: " + std::string(row.traced) + '\n'));
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
