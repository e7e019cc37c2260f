#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>

#include "text/Conversion.h"
#include "text/SPString.h"
#include "text/SPUString.h"

namespace tolvanix::test {
namespace {

TEST(SPString, CompareMode_DecidesEqualityAndOrder) {
  SPString upper("ABZ");
  const SPString lower("abz");
  EXPECT_FALSE(upper == lower);
  EXPECT_EQ(upper.compare(lower, kCaseSensitive), -1);
  upper.setCompareMode(kCaseInsensitive);
  EXPECT_TRUE(upper == lower);
  EXPECT_GT(SPString("\xE9").compare(SPString("z"), kCaseSensitive), 0) << "units are unsigned";
  EXPECT_LT(SPString("ab").compare(SPString("abc"), kCaseInsensitive), 0) << "a prefix is smaller";
  EXPECT_NE(SPString("\xC9").compare(SPString("\xE9"), kCaseInsensitive), 0) << "A to Z alone fold";
}

TEST(SPString, Mode_GoesWithCopiesAndSubstringsOnly) {
  SPString text(" AbC ");
  text.setCompareMode(kCaseInsensitive);
  EXPECT_EQ(SPString(text).getCompareMode(), kCaseInsensitive);
  EXPECT_EQ(text.substr(1, 2).getCompareMode(), kCaseInsensitive);
  EXPECT_EQ(text.trim().getCompareMode(), kCaseSensitive);
  EXPECT_EQ((text + "x").getCompareMode(), kCaseSensitive);
  text = std::string("other");
  EXPECT_EQ(text.getCompareMode(), kCaseInsensitive) << "a base string brings text alone";
}

TEST(SPString, Trim_TakesBlanksOnly) {
  EXPECT_EQ(SPString("  a b  ").trim(), SPString("a b"));
  EXPECT_EQ(SPString("   ").trim(), SPString(""));
  EXPECT_EQ(SPString("\ta ").trim(), SPString("\ta"));
  EXPECT_EQ(SPVersionString(SPString(" 6.1 ")), SPString("6.1"));
}

TEST(SPString, ToWide_NeedsRoomForTheZero) {
  char16_t buffer[4] = {u'#', u'#', u'#', u'#'};
  EXPECT_EQ(SPString("abcd").toWide(buffer, 4), nullptr);
  EXPECT_EQ(buffer[0], u'#');
  ASSERT_EQ(SPString("ab\xE9").toWide(buffer, 4), buffer);
  EXPECT_EQ(std::u16string(buffer), u"ab\u00E9");
}

TEST(SPUString, Numbers_HaveAtLeastFourDigits) {
  EXPECT_EQ(SPUString(0x12345U), SPUString(u"12345"));
  EXPECT_EQ(SPUString(5, SPUString::Decimal{}), SPUString(u"0005"));
  EXPECT_EQ(SPUString(-1, SPUString::Decimal{}), SPUString(u"-0001"));
}

TEST(Conversion, NarrowText_SurvivesTheWayThroughWideText) {
  std::string bytes;
  for (int i = 1; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(narrow(widen(bytes)), bytes);
  EXPECT_EQ(narrow(u"a\u0100\uFFFF"), "a??");
}

TEST(Conversion, ToXmlUtf8_IsAlwaysUtf8ThatXmlAllows) {
  const std::pair<std::u16string, std::string> rows[] = {
      {u"plain", "plain"},
      {u"\u00E7\u00BD\u0091\u00E5\u008D\u00A1", "\xE7\xBD\x91\xE5\x8D\xA1"},  // UTF-8, widened
      {u"\u7F51\u5361", "\xE7\xBD\x91\xE5\x8D\xA1"},                          // real wide text
      {u"Intel\u00AE", "Intel\xC2\xAE"},                                      // an ANSI byte
      {u"\u00E7\u00BD", "\xC3\xA7\xC2\xBD"},                                  // cut-off UTF-8
      {u"vid\u00E9o PCI", "vid\xC3\xA9o PCI"},                                // no tail follows
      {u"\u00C3\u00E9", "\xC3\x83\xC3\xA9"},
      {u"\u00F0\u009F\u0092\u00BE", "\xF0\x9F\x92\xBE"},                  // four bytes
      {u"\u00F4\u0090\u0080\u0080", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"},  // past Unicode
      {{char16_t(0x7FF), char16_t(0x800), char16_t(0xE000), char16_t(0xFFFD)},
       "\xDF\xBF\xE0\xA0\x80\xEE\x80\x80\xEF\xBF\xBD"},
      {{char16_t(0xD800), char16_t(0xDC00), char16_t(0xDBFF), char16_t(0xDFFF)},
       "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {u"\u00DF\u00BF\u00EF\u00BD\u00A1\u00F4\u008F\u00BF\u00BD",
       "\xDF\xBF\xEF\xBD\xA1\xF4\x8F\xBF\xBD"},
      {u"\u00C0\u0080", "\xC3\x80\xC2\x80"},  // overlong
      {u"\u00E0\u009F\u00BF", "\xC3\xA0\xC2\x9F\xC2\xBF"},
      {u"\u00F0\u008F\u00BF\u00BD", "\xC3\xB0\xC2\x8F\xC2\xBF\xC2\xBD"},
      {u"\u00ED\u00A0\u0080", "\xC3\xAD\xC2\xA0\xC2\x80"},  // a surrogate in UTF-8
      {{u'a', char16_t(0xD83D), char16_t(0xD83D), char16_t(0xDE00)},
       "a\xEF\xBF\xBD\xF0\x9F\x98\x80"},
      {{char16_t(0xDE00), u'/'}, "\xEF\xBF\xBD/"},
      {{char16_t(1), u'\t', u'\n', char16_t(0xFFFE)}, "\xEF\xBF\xBD\t\n\xEF\xBF\xBD"},
  };
  for (const auto& [text, bytes] : rows) EXPECT_EQ(toXmlUtf8(text), bytes);
  for (std::size_t before = 0; before < 200; ++before) {  // wherever it is in a long text
    const std::u16string text =
        std::u16string(before, u'a') + u"\u7F51" + std::u16string(150, u'b');
    EXPECT_EQ(toXmlUtf8(text), std::string(before, 'a') + "\xE7\xBD\x91" + std::string(150, 'b'));
  }
}

}  // namespace
}  // namespace tolvanix::test
