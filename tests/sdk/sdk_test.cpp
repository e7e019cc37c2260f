// Parts of the sample validation library and of the sample helper program.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "helper/SystemError.h"
#include "validation/Validation.h"
#include "validation/Version.h"
#include "validation/Xml.h"
#include "winapi/winapi.h"

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
  for (const std::u16string_view same : {u"1.2", u"01.2.0.0", u"1.2.", u"1.2-5"}) {
    EXPECT_EQ(compareVersions(same, u"1.2"), 0);
  }
  EXPECT_EQ(compareVersions(u" 0.x", u""), 0);
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
  std::u16string nested = u"<a/>";
  for (int depth = 2; depth <= 65; ++depth) {
    nested = u"<a>" + nested + u"</a>";
    EXPECT_EQ(static_cast<bool>(parseXml(nested)), depth <= 64);
  }
}

TEST(Validate, AnyDeviceName_GivesAWellFormedDocument) {
  const std::u16string ids = u"vendorID=\"1\" deviceID=\"2\" subDeviceID=\"3\" subVendorID=\"4\"";
  const std::u16string name = u"A &amp; &lt;B&gt; &quot;\x01\x1F\xD800\uFFFF\u7F51\U0001F4BE\t%s";
  const std::u16string package =
      u"<P><SupportedDevices><Device " + ids + u" version=\"2\"/></SupportedDevices></P>";
  for (const std::u16string version : {u"1", u"2", u"3", u""}) {
    const std::u16string document = validate(package, u"<I><Device " + ids + u" display=\"" + name +
                                                          u"\"><Application version=\"" + version +
                                                          u"\" display=\"d\"/></Device></I>");
    EXPECT_TRUE(parseXml(document));
    EXPECT_NE(
        document.find(u"A &amp; &lt;B&gt; &quot;\uFFFD\uFFFD\uFFFD\uFFFD\u7F51\U0001F4BE\t%s"),
        std::u16string::npos);
  }
}

// Also for the errors of Windows.
TEST(HelperExitCode, SystemError_HasItsMeaningAndIsNeverASuccess) {
  const std::pair<std::uint32_t, ExitCode> rows[] = {
      {ERROR_FILE_NOT_FOUND, kInfUnusable},
      {ERROR_LINE_NOT_FOUND, kInfUnusable},
      {0xE000020B, kNoDevice},  // ERROR_NO_SUCH_DEVINST
      {ERROR_NO_MORE_ITEMS, kNotBetter},
      {740, kNoRights},      // ERROR_ELEVATION_REQUIRED
      {1459, kNeedsAnswer},  // ERROR_REQUIRES_INTERACTIVE_WINDOWSTATION
      {ERROR_SUCCESS, kNotInstalled},
      {0xE0000235, kNotInstalled},  // ERROR_IN_WOW64
  };
  for (const auto& [error, exitCode] : rows) EXPECT_EQ(exitCodeFor(error), exitCode) << error;
}

}  // namespace
}  // namespace tolvanix::sample
