#include <gtest/gtest.h>

#include "xml/SPXMLStatus.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix::test {
namespace {

TEST(SPXMLValidation, ReadsTypeResultAndEveryMessage) {
  const SPXMLValidation finding(
      uR"(<Validation type="soft" result="false"><Message>m1</Message><Message id="7">m2</Message></Validation>)");
  EXPECT_TRUE(finding.getType() == SPUString(u"soft"));
  ASSERT_EQ(finding.getMessageCount(), 2U);
  EXPECT_TRUE(finding.getMessage(1) == SPUString(u"m2"));
  EXPECT_TRUE(finding.getMessage(2).empty());
  EXPECT_TRUE(finding.getAllMessages() == SPUString(u"m1\r\nm2\r\n"));
  // The last start tag is looked for by its text, which is also that of another element's start.
  for (const char16_t* const cut :
       {u"<Message</Message><Message", u"<Messages>1</Message><Message"}) {
    EXPECT_TRUE(SPXMLValidation(cut).getAllMessages() == SPUString(u"\r\n"));
  }
}

TEST(SPXMLResult, WritesWhatItReadFromItsElement) {
  const std::u16string read = u"<Message>1 &lt; 2</Message><Message><![CDATA[m2]]></Message>";
  const std::u16string written =
      u"<Message>1 &lt; 2</Message><Message>&lt;![CDATA[m2]]&gt;</Message>";
  EXPECT_TRUE(
      SPXMLValidation(u"<Validation type=\"soft\" result=\"false\">" + read + u"</Validation>")
          .generateXML() ==
      SPUString(u"<Validation type=\"soft\"  result=\"false\" >" + written + u"</Validation>"));
  EXPECT_TRUE(SPXMLValidation(u"<x/>").generateXML() == SPUString(u"<Validation></Validation>"));
  EXPECT_EQ(SPXMLValidation(u"<Message>1</Message>").getMessageCount(), 1U);
  SPXMLStatus copy;
  copy = SPXMLStatus(u"<SPStatus result=\"true\" reboot=\"true\" extMessage=\"x\">" + read +
                     u"</SPStatus>");
  EXPECT_TRUE(copy.generateXML() ==
              SPUString(u"<SPStatus result=\"true\"  reboot=\"true\"  extMessage=\"x\" >" +
                        written + u"</SPStatus>"));
  EXPECT_TRUE(SPXMLStatus(u"<SPStatus>" + read + u"</SPStatus>").generateXML().empty());
}

}  // namespace
}  // namespace tolvanix::test
