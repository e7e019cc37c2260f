#include "app/XMLWriter.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Files.h"

namespace tolvanix {
namespace {

TEST(XMLWriter, Messages_AreThereForEveryStatusAndNoOther) {
  const XMLWriter writer;
  for (int id = 0; id <= 40; ++id) {
    ASSERT_NE(writer.getMessage(id), nullptr) << id;
    EXPECT_EQ(std::string(writer.getMessage(id)).find_first_of("<&"), std::string::npos) << id;
  }
  EXPECT_EQ(writer.getMessage(-1), nullptr);
  EXPECT_EQ(writer.getMessage(41), nullptr);
}

TEST(XMLWriter, RemoveOSElement_TakesTheFirstWholeOne) {
  const struct {
    std::string text;
    int result;
    std::string left;
  } cases[] = {
      {"x<OperatingSystem a=\"1\" ></OperatingSystem>y", 1, "xy"},
      {"x<OperatingSystem>y", 0, "x<OperatingSystem>y"},
      {"</OperatingSystem><OperatingSystem>", 0, "</OperatingSystem><OperatingSystem>"},
      {"plain", 2, "plain"},
      {"<OperatingSystem></OperatingSystem>-<OperatingSystem></OperatingSystem>", 1,
       "-<OperatingSystem></OperatingSystem>"},
  };
  for (const auto& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(XMLWriter::removeOSElementFromXMLString(text), c.result) << c.text;
    EXPECT_EQ(text, c.left);
  }
}

TEST(XMLWriter, DeviceResult_IsWrittenAsItStands) {
  const test::TempDir folder;
  const std::string file = (folder / "result.xml").string();
  test::writeFile(file, "an older document");
  XMLWriter writer;
  writer.setOutputFileName(file.c_str());
  writer.writeXMLDeclaration();
  writer.writeDeviceResult(
      {0x8086, 0x1, 0x12345, 0xFFFFFFFF, -1, 31, 0, "100 %s &amp;", "DRVR", "1.0", "d", "A05", 36});
  EXPECT_EQ(
      test::readFile(file),
      R"(<?xml version="1.0" encoding="UTF-8"?>)"
      R"(<Device vendorID="8086" deviceID="0001" subDeviceID="12345" subVendorID="FFFFFFFF" )"
      R"(bus="-1" device="31" function="0" display="100 %s &amp;">)"
      R"(<Application componentType="DRVR" version="1.0" display="d">)"
      R"(<Package version="A05"/><SPStatus result="false"><Message id="36">Operation failed. )"
      R"(Hardware ID not found in any of the .INF files. Contact Tarvek Support.</Message>)"
      R"(</SPStatus></Application></Device>)");
}

}  // namespace
}  // namespace tolvanix
