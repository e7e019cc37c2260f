#include <gtest/gtest.h>

#include "xml/SPXMLStatus.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix {
namespace {

TEST(SPXMLValidation, ReadsTypeResultAndEveryMessage) {
  const SPXMLValidation finding(
      uR"(<Validation type="soft" result="false"><Message>m1</Message><Message id="7">m2</Message></Validation>)");
  EXPECT_TRUE(finding.getType() == SPUString(u"soft"));
  EXPECT_TRUE(finding.getResult() == SPUString(u"false"));
  ASSERT_EQ(finding.getMessageCount(), 2U);
  EXPECT_TRUE(finding.getMessage(1) == SPUString(u"m2"));
  EXPECT_TRUE(finding.getMessage(2).empty());
  EXPECT_TRUE(finding.getAllMessages() == SPUString(u"m1\r\nm2\r\n"));
  EXPECT_TRUE(
      finding.generateXML() ==
      SPUString(
          uR"(<Validation type="soft"  result="false" ><Message>m1</Message><Message>m2</Message></Validation>)"));
}

TEST(SPXMLValidation, WithoutElement_IsEmptyButTakesMessages) {
  EXPECT_TRUE(SPXMLValidation(u"<x/>").generateXML() == SPUString(u"<Validation></Validation>"));
  EXPECT_EQ(SPXMLValidation(u"<Message>1</Message>").getMessageCount(), 1U);
}

TEST(SPXMLStatus, WithoutResult_WritesNothing) {
  EXPECT_TRUE(SPXMLStatus(u"<SPStatus><Message>1</Message></SPStatus>").generateXML().empty());
}

TEST(SPXMLStatus, WritesWhatItRead_EntitiesKept) {
  SPXMLStatus copy;
  copy = SPXMLStatus(
      uR"(<SPStatus result="true" reboot="true" extMessage="x"><Message>1 &lt; 2</Message></SPStatus>)");
  EXPECT_TRUE(
      copy.generateXML() ==
      SPUString(
          uR"(<SPStatus result="true"  reboot="true"  extMessage="x" ><Message>1 &lt; 2</Message></SPStatus>)"));
}

}  // namespace
}  // namespace tolvanix
