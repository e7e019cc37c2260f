#include <gtest/gtest.h>

#include <vector>

#include "text/Conversion.h"
#include "xml/SPXMLObject.h"
#include "xml/SPXMLStatus.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix::test {
namespace {

const SPUString kName(u"a");  // of the elements that are asked for

SPUString elements(const SPUString& text) {
  SPUString all;
  for (const SPUString& element : SPXMLObject::getElements(text, kName)) all += element;
  return all;
}

SPUString attribute(const SPUString& text) {
  SPXMLObject object;
  object.setXML(text);
  return object.getAttribute(kName, SPUString(u"v"));
}

TEST(SPXMLObject, Queries_SearchTheText) {
  struct Row {
    const char16_t* text;
    const char16_t* result;
  };
  const struct {
    SPUString (*query)(const SPUString& text);
    std::vector<Row> rows;
  } queries[] = {
      {SPXMLObject::getElementName,
       {{uR"(<?xml version="1.0"?><SVMInventory lang="en">)", u"SVMInventory"},
        {u"", u""},
        {uR"(<?xml version="1.0"?>)", u""},
        {u"<!-- c --><a/>", u"!--"},
        {u"text <a", u"a"},
        {u"<a\tb>", u"a\tb"},  // only a blank ends a name
        {u"</a>", u""}}},
      {[](const SPUString& text) { return SPXMLObject::findStartTag(text, kName, 1); },
       {{uR"(-<as><a v="1"/></as>)", uR"(<a v="1"/>)"},
        {uR"(<a v="1"/>)", u""},
        {u"", u""},
        {u"-<as></as>", u""},
        {u"-<as", u""},
        {u"-<a v=1", u"<a v=1"}}},
      {[](const SPUString& text) { return SPXMLObject::extractElement(text, kName, 0, true); },
       {{u"<a><a>x</a></a>", u"<a><a>x</a>"},  // ends at the first closing tag
        {u"-<a b=\"c\"/>-", u"<a b=\"c\"/>"},
        {u"<a>x", u""},
        {u"</a><a>x</a>", u"<a>x</a>"},
        {u"<a </a>b", u"<a </a>"},
        {u"<ab/><a> &lt; </a>", u"<a> &lt; </a>"}}},
      {[](const SPUString& text) { return SPXMLObject::extractElement(text, kName, 0, false); },
       {{u"<a><a>x</a></a>", u"<a>x"},
        {u"-<a b=\"c\"/>-", u""},
        {u"<a>x", u""},
        {u"<a </a>b", u""},
        {u"<ab/><a> &lt; </a>", u" &lt; "}}},
      {elements,
       {{u"<s><a>1</a> <t><a>2</a></t><!-- <a/> --></s>", u"<a>1</a><a>2</a><a/>"},
        {u"<a>1</a><a>2<a/>", u"<a>1</a>"},  // up to the first that is not closed
        // found again after each closing tag before it
        {u"</a></a><a>x</a><a>y</a>", u"<a>x</a><a>x</a><a>x</a><a>y</a>"},
        {u"<ab <a/><a/>", u"<a/><a/>"},  // in the tag that is passed over, too
        {u"<aa></aa>", u""}}},
      {attribute,
       {{uR"(<a subvID="1502" v="25">x</a>)", u"1502"},  // where its name first occurs
        {uR"(<a v="x&amp;/b"/>)", u"x&amp;/b"},
        {uR"(<a b="v" c="2"/>)", u""},
        {uR"(<a><P v="2"/></a>)", u"2"},
        {uR"(<a v=""/><a v="x"/>)", u"x"},
        {uR"(<a w=""/>)", u""},
        {uR"(<a v='1'/>)", u""},
        {uR"(<a v="1/>)", u""}}},
      {[](const SPUString& text) { return SPXMLObject::getElementCData(text, kName); },
       {{u"<a>x<![CDATA[  Video  ]]>y</a>", u"Video"},
        {u"<a>]]><![CDATA[Video]]></a>", u"Video"},
        {u"<a>Plain</a>", u"Plain"},
        {u"<a>b]]>c</a>", u"b]]>c"},
        {u"<a><![CDATA[b</a>", u"<![CDATA[b"}}},
      {SPXMLObject::escapeText,
       {{u"a < b & c", u"a &lt; b &amp; c"},
        {u"&amp;&#38;", u"&amp;&amp;#38;"},
        {u"say \"hi\" it's", u"say &quot;hi&quot; it&apos;s"},
        {u"&lt;t&gt; &quot; &apos; &AMP;", u"&lt;t&gt; &quot; &apos; &amp;AMP;"},
        {u"&", u"&amp;"},
        {u"&gt", u"&amp;gt"}}},
      {SPXMLObject::unescapeText,
       {{u"&amp;&#38;", u"&&#38;"},
        {u"&lt;t&gt; &quot; &apos; &AMP;", u"<t> \" ' &AMP;"},
        {u"&amp;lt; &amp;amp;", u"< &"},  // also what is escaped more than once
        {u"&amp;amp;amp;lt; &am&amp;p;", u"< &am&p;"},
        {u"&", u"&"},
        {u"&gt", u"&gt"}}},
      {[](const SPUString& text) { return SPXMLObject::insertChild(text, kName, kName); },
       {{uR"(<a b="1"/>)", uR"(<a b="1">a</a>)"},
        {u"<a><b/></a>", u"<a><b/>a</a>"},
        {u"<?xml?><a></a> <a/>", u"<a>a</a><a>a</a>"},  // and the elements alone are left
        {u"<b/>", u""}}},
  };
  for (const auto& [query, rows] : queries) {
    for (const auto& [text, result] : rows) {
      EXPECT_EQ(narrow(query(SPUString(text))), narrow(result)) << narrow(text);
    }
  }
}

TEST(SPXMLObject, Numbers_AreReadFromTheStartOfAValue) {
  const std::pair<const char16_t*, int> rows[] = {
      {u"<a v=\"0012\"/>", 12},
      {u"<a v=\"x\"/>", 0},
      {u"<a v=\"\t\r -7x\"/>", -7},
      {u"<a v=\"99999999999\"/>", 2147483647},
      {u"<a v=\"-99999999999\"/>", -2147483647 - 1},
  };
  for (const auto& [text, number] : rows) {
    SPXMLObject object;
    object.setXML(SPUString(text));
    EXPECT_EQ(object.getAttributeInt(SPString("a"), SPString("v")), number);
  }
  const SPUString three(uR"(<a v="1"/><a/><a v="2"/>)");
  EXPECT_EQ(SPXMLObject::getAttributePairs(three, kName, SPUString(u"v")).size(), 2U);
  EXPECT_EQ(SPXMLObject::findElementEnd(SPUString(u"</a><a>x</a>"), kName, 0), 4) << "not after it";
  EXPECT_EQ(SPXMLObject::findElementEnd(SPUString(u"<a>"), kName, 0), -1);
}

TEST(SPXMLObject, BuildElement_SpacesAttributesAndAlwaysCloses) {
  SPXMLAttribute type(u"type");
  const SPXMLAttribute result(u"result", SPString("&amp;lt;"));
  type.setValue(u"A &amp;amp; \"x\"");
  EXPECT_EQ(narrow(SPXMLObject::buildElement(kName, {type, result}, SPUString(u"<b/>"))),
            R"(<a type="A &amp; &quot;x&quot;"  result="&lt;" ><b/></a>)");
  EXPECT_EQ(narrow(SPXMLAttribute(u"", 0x1AU).format()), "");
  EXPECT_EQ(narrow(SPXMLAttribute(u"id", 0x1AU).format()), " id=\"001A\" ");
}

TEST(SPXMLValidation, ReadsTypeResultAndEveryMessage) {
  const SPXMLValidation finding(
      uR"(<Validation type="soft" result="false"><Message>m1</Message><Message id="7">m2</Message></Validation>)");
  EXPECT_EQ(narrow(finding.getType()), "soft");
  EXPECT_EQ(finding.getMessageCount(), 2U);
  EXPECT_EQ(narrow(finding.getMessage(1)), "m2");
  EXPECT_EQ(narrow(finding.getMessage(2)), "");
  EXPECT_EQ(narrow(finding.getAllMessages()), "m1\r\nm2\r\n");
  // The last start tag is looked for by its text, which is also that of another element's start.
  for (const char16_t* const cut :
       {u"<Message</Message><Message", u"<Messages>1</Message><Message"}) {
    EXPECT_EQ(narrow(SPXMLValidation(cut).getAllMessages()), "\r\n");
  }
}

TEST(SPXMLResult, WritesWhatItReadFromItsElement) {
  const std::u16string read = u"<Message>1 &lt; 2</Message><Message><![CDATA[m2]]></Message>";
  const std::string written = "<Message>1 &lt; 2</Message><Message>&lt;![CDATA[m2]]&gt;</Message>";
  const auto rewritten = [](const std::u16string& text) {
    return narrow(SPXMLValidation(text).generateXML());
  };
  EXPECT_EQ(rewritten(u"<Validation type=\"soft\" result=\"false\">" + read + u"</Validation>"),
            "<Validation type=\"soft\"  result=\"false\" >" + written + "</Validation>");
  EXPECT_EQ(rewritten(u"<x/>"), "<Validation></Validation>");
  EXPECT_EQ(SPXMLValidation(u"<Message>1</Message>").getMessageCount(), 1U);
  SPXMLStatus copy;
  copy = SPXMLStatus(u"<SPStatus result=\"true\" reboot=\"true\" extMessage=\"x\">" + read +
                     u"</SPStatus>");
  EXPECT_EQ(
      narrow(copy.generateXML()),
      "<SPStatus result=\"true\"  reboot=\"true\"  extMessage=\"x\" >" + written + "</SPStatus>");
  EXPECT_EQ(narrow(SPXMLStatus(u"<SPStatus>" + read + u"</SPStatus>").generateXML()), "");
}

}  // namespace
}  // namespace tolvanix::test
