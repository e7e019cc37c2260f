// The sample validation library's parts.
#include <gtest/gtest.h>

#include <string>

#include "validation/Validation.h"
#include "validation/Version.h"
#include "validation/Xml.h"

namespace tolvanix::sample {
namespace {

TEST(CompareVersions, FieldsAreNumbers) {
  const std::u16string_view ascending[] = {
      u"0",    u"0.9", u"1",  u"1.0.0.1", u"1.9",
      u"1.10", u"2",   u"10", u"10.1-k",  u"99999999999999999999"};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      const int order = compareVersions(ascending[i], ascending[j]);
      EXPECT_EQ((order > 0) - (order < 0), (i > j) - (i < j)) << i << ' ' << j;
    }
  }
  for (const std::u16string_view same : {u"1.2", u"01.2.0.0", u"1.2.", u"1.2-5", u" 0.x"}) {
    EXPECT_EQ(compareVersions(same, same == u" 0.x" ? u"" : u"1.2"), 0);
  }
}

TEST(ParseXml, OnlyNestedElementsWithQuotedAttributesAreRead) {
  const auto root = parseXml(
      u"\uFEFF<?xml version='1.0'?><!DOCTYPE a><!-- <b> --><a x='1' y = \"&lt;&amp;lt;&no;>\">"
      u"t<![CDATA[<c>]]><b/><b z=\"\"></b ></a>");
  ASSERT_TRUE(root);
  EXPECT_EQ(root->attribute(u"x"), u"1");
  EXPECT_EQ(root->attribute(u"y"), u"<&lt;&no;>");
  EXPECT_EQ(root->attribute(u"z"), u"");
  EXPECT_EQ(root->children.size(), 2U);
  for (const std::u16string_view text :
       {u"", u"text", u"<a>", u"<a", u"<a x>", u"<a x=1/>", u"<a x='1/>", u"<a></b>", u"</a>",
        u"<a/><a/>", u"<>", u"<a><!-- </a>"}) {
    EXPECT_FALSE(parseXml(text)) << std::string(text.begin(), text.end());
  }
  const auto nested = [](int depth) {
    std::u16string text;
    for (int i = 0; i < depth; ++i) text += u"<a>";
    for (int i = 0; i < depth; ++i) text += u"</a>";
    return text;
  };
  EXPECT_TRUE(parseXml(nested(64)));
  EXPECT_FALSE(parseXml(nested(65)));
}

TEST(Validate, AnyDeviceName_GivesAWellFormedDocument) {
  const std::u16string package =
      u"<P><SupportedDevices><Device vendorID=\"1\" deviceID=\"2\" subDeviceID=\"3\" "
      u"subVendorID=\"4\" version=\"2\"/></SupportedDevices></P>";
  const std::u16string name = u"A &amp; &lt;B&gt; &quot;\x01\xD800\uFFFF\u7F51\U0001F4BE\t%s";
  for (const char16_t* const version : {u"1", u"2", u"3", u""}) {
    std::u16string inventory =
        u"<I><Device vendorID=\"0001\" deviceID=\"0002\" subDeviceID=\"0003\" "
        u"subVendorID=\"0004\" display=\"";
    inventory.append(name).append(u"\"><Application version=\"").append(version);
    inventory += u"\" display=\"d\"/></Device></I>";
    const std::u16string document = validate(package, inventory);
    EXPECT_TRUE(parseXml(document));
    EXPECT_NE(document.find(u"A &amp; &lt;B&gt; &quot;\uFFFD\uFFFD\uFFFD\u7F51\U0001F4BE\t%s"),
              std::u16string::npos);
  }
}

}  // namespace
}  // namespace tolvanix::sample
