#include "xml/SPXMLObject.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace tolvanix::test {
namespace {

SPUString wide(const char16_t* text) {
  return SPUString(text);
}

TEST(SPXMLObject, RootName_IsTheFirstElementThatIsNoInstruction) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {uR"(<?xml version="1.0"?><SVMInventory lang="en">)", u"SVMInventory"},
      {u"", u""},
      {uR"(<?xml version="1.0"?>)", u""},
      {u"<!-- c --><a/>", u"!--"},
      {u"text <a", u"a"},
      {u"<a\tb>", u"a\tb"},  // only a blank ends a name
      {u"</a>", u""},
  };
  for (const auto& [text, name] : rows) {
    EXPECT_TRUE(SPXMLObject::getElementName(wide(text)) == wide(name)) << wide(text).size();
  }
}

TEST(SPXMLObject, FindStartTag_PassesOverLongerNames) {
  const auto tag = [](const char16_t* text, std::int32_t from) {
    return SPXMLObject::findStartTag(wide(text), wide(u"Device"), from);
  };
  const char16_t* const nested = uR"(<Devices><Device vendorID="1DE4"/></Devices>)";
  EXPECT_TRUE(tag(nested, 0) == wide(uR"(<Device vendorID="1DE4"/>)"));
  EXPECT_TRUE(tag(nested, 10).empty());
  EXPECT_TRUE(tag(nested, 1000).empty());
  EXPECT_TRUE(tag(u"<Devices></Devices>", 0).empty());
  EXPECT_TRUE(tag(u"<Devices", 0).empty());
  EXPECT_TRUE(tag(u"<Device a=1", 0) == wide(u"<Device a=1"));
}

TEST(SPXMLObject, Elements_EndAtTheFirstClosingTag) {
  const SPUString a = wide(u"a");
  const struct {
    const char16_t* text;
    const char16_t* whole;
    const char16_t* inner;
    int end;
  } cases[] = {
      {u"<a><a>x</a></a>", u"<a><a>x</a>", u"<a>x", 11},
      {u"-<a b=\"c\"/>-", u"<a b=\"c\"/>", u"", 11},
      {u"<a>x", u"", u"", -1},
      {u"</a><a>x</a>", u"<a>x</a>", u"x", 4},  // the end is looked for from the position on
      {u"<a </a>b", u"<a </a>", u"", 7},        // the closing tag inside the start tag
      {u"<ab/><a> &lt; </a>", u"<a> &lt; </a>", u" &lt; ", 18},
  };
  for (const auto& c : cases) {
    const SPUString text = wide(c.text);
    EXPECT_TRUE(SPXMLObject::extractElement(text, a, 0, true) == wide(c.whole));
    EXPECT_TRUE(SPXMLObject::extractElement(text, a, 0, false) == wide(c.inner));
    EXPECT_EQ(SPXMLObject::findElementEnd(text, a, 0), c.end);
  }
}

TEST(SPXMLObject, GetElements_ListsAllUpToTheFirstUnclosed) {
  const auto joined = [](const char16_t* text) {
    SPUString all;
    for (const SPUString& m : SPXMLObject::getElements(wide(text), wide(u"m"))) all = all + m;
    return all;
  };
  EXPECT_TRUE(joined(u"<s><m>1</m> <t><m>2</m></t><!-- <m/> --></s>") ==
              wide(u"<m>1</m><m>2</m><m/>"));
  EXPECT_TRUE(joined(u"<m>1</m><m>2<m/>") == wide(u"<m>1</m>"));
  EXPECT_TRUE(joined(u"<mm></mm>").empty());
}

TEST(SPXMLObject, Attributes_AreTakenWhereTheirNameFirstOccurs) {
  const char16_t* const device = uR"(<D vendorID="1350" deviceID="1502" device="25">a</D>)";
  const struct {
    const char16_t* text;
    const char16_t* attribute;
    const char16_t* value;
    int number;
  } rows[] = {
      {device, u"device", u"1502", 1502},
      {device, u"vendorID", u"1350", 1350},
      {uR"(<D v="a&amp;/b"/>)", u"v", u"a&amp;/b", 0},
      {uR"(<D a="v" b="2"/>)", u"v", u"", 0},
      {uR"(<D><P v="2"/></D>)", u"v", u"2", 2},
      {uR"(<D v=""/><D v="x"/>)", u"v", u"x", 0},
      {uR"(<D w=""/>)", u"v", u"", 0},
      {uR"(<D v='1'/>)", u"v", u"", 0},
      {uR"(<D v="1/>)", u"v", u"", 0},
      {uR"(<D v="0012"/>)", u"v", u"0012", 12},
      {u"<D v=\"\t\r -7x\"/>", u"v", u"\t\r -7x", -7},
      {uR"(<D v="99999999999"/>)", u"v", u"99999999999", 2147483647},
      {uR"(<D v="-99999999999"/>)", u"v", u"-99999999999", -2147483647 - 1},
  };
  for (const auto& row : rows) {
    SPXMLObject object;
    object.setXML(wide(row.text));
    EXPECT_TRUE(object.getAttribute(wide(u"D"), wide(row.attribute)) == wide(row.value));
    EXPECT_EQ(object.getAttributeInt(SPString("D"), SPString(wide(row.attribute).c_str())),
              row.number);
  }
  const SPUString three = wide(uR"(<D v="1"/><D/><D v="2"/>)");
  EXPECT_EQ(SPXMLObject::getAttributePairs(three, wide(u"D"), wide(u"v")).size(), 2U);
}

TEST(SPXMLObject, GetElementCData_UnwrapsAndTrimsASection) {
  const auto cdata = [](const char16_t* text) {
    return SPXMLObject::getElementCData(wide(text), wide(u"D"));
  };
  EXPECT_TRUE(cdata(u"<D>x<![CDATA[  Video  ]]>y</D>") == wide(u"Video"));
  EXPECT_TRUE(cdata(u"<D>]]><![CDATA[Video]]></D>") == wide(u"Video"));
  EXPECT_TRUE(cdata(u"<D>Plain</D>") == wide(u"Plain"));
  EXPECT_TRUE(cdata(u"<D>a]]>b</D>") == wide(u"a]]>b"));
  EXPECT_TRUE(cdata(u"<D><![CDATA[a</D>") == wide(u"<![CDATA[a"));
}

TEST(SPXMLObject, Escaping_GivesWhatRepeatedReplacingWouldGive) {
  const struct {
    const char16_t* text;
    const char16_t* escaped;
    const char16_t* unescaped;
  } rows[] = {
      {u"a < b & c", u"a &lt; b &amp; c", u"a < b & c"},
      {u"&amp;&#38;", u"&amp;&amp;#38;", u"&&#38;"},
      {u"say \"hi\" it's", u"say &quot;hi&quot; it&apos;s", u"say \"hi\" it's"},
      {u"&lt;t&gt; &quot; &apos; &AMP;", u"&lt;t&gt; &quot; &apos; &amp;AMP;", u"<t> \" ' &AMP;"},
      {u"&amp;lt; &amp;amp;", u"&amp;lt; &amp;amp;", u"< &"},
      {u"&amp;amp;amp;lt; &am&amp;p;", u"&amp;amp;amp;lt; &amp;am&amp;p;", u"< &am&p;"},
      {u"&", u"&amp;", u"&"},
      {u"&gt", u"&amp;gt", u"&gt"},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(SPXMLObject::escapeText(SPUString(row.text)) == SPUString(row.escaped));
    EXPECT_TRUE(SPXMLObject::unescapeText(SPUString(row.text)) == SPUString(row.unescaped));
  }
}

TEST(SPXMLObject, BuildElement_SpacesAttributesAndAlwaysCloses) {
  SPXMLAttribute type(u"type");
  SPXMLAttribute result(u"result", SPString("&amp;lt;"));
  const SPUString name = wide(u"Validation");
  type.setValue(u"A &amp;amp; \"x\"");
  EXPECT_TRUE(
      SPXMLObject::buildElement(name, {type, result}, wide(u"<a/>")) ==
      wide(u"<Validation type=\"A &amp; &quot;x&quot;\"  result=\"&lt;\" ><a/></Validation>"));
  EXPECT_TRUE(SPXMLAttribute(u"", 0x1AU).format().empty());
  EXPECT_TRUE(SPXMLAttribute(u"id", 0x1AU).format() == wide(u" id=\"001A\" "));
}

TEST(SPXMLObject, InsertChild_KeepsOnlyTheElements) {
  const SPUString name = wide(u"X");
  const auto insert = [&](const char16_t* text) {
    return SPXMLObject::insertChild(wide(text), name, wide(u"<Y/>"));
  };
  EXPECT_TRUE(insert(uR"(<X a="1"/>)") == wide(uR"(<X a="1"><Y/></X>)"));
  EXPECT_TRUE(insert(u"<X><Y/></X>") == wide(u"<X><Y/><Y/></X>"));
  EXPECT_TRUE(insert(u"<?xml?><X></X> <X/>") == wide(u"<X><Y/></X><X><Y/></X>"));
  EXPECT_TRUE(insert(u"<Z/>").empty());
}

}  // namespace
}  // namespace tolvanix::test
