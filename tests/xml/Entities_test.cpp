#include <gtest/gtest.h>

#include <random>
#include <string>

#include "xml/SPXMLObject.h"

namespace tolvanix {
namespace {

// The conversions as they are described: one replacement at a time, each time from the start.
std::u16string replaceAll(std::u16string text, const std::u16string& from,
                          const std::u16string& to) {
  for (std::size_t at = text.find(from); at != text.npos; at = text.find(from)) {
    text.replace(at, from.size(), to);
  }
  return text;
}

const std::pair<std::u16string, std::u16string> kEntities[] = {
    {u"&", u"&amp;"}, {u"<", u"&lt;"}, {u">", u"&gt;"}, {u"\"", u"&quot;"}, {u"'", u"&apos;"}};

std::u16string escapedSlowly(std::u16string text) {
  for (std::size_t at = text.find(u'&'); at != text.npos; at = text.find(u'&', at)) {
    bool entity = false;
    for (const auto& [character, name] : kEntities)
      entity |= text.compare(at, name.size(), name) == 0;
    if (!entity) text.replace(at, 1, u"&amp;");
    at += entity ? 1 : 5;
  }
  for (std::size_t i = 1; i < 5; ++i)
    text = replaceAll(text, kEntities[i].first, kEntities[i].second);
  return text;
}

std::u16string unescapedSlowly(std::u16string text) {
  for (const auto& [character, name] : kEntities) text = replaceAll(text, name, character);
  return text;
}

TEST(Entities, OnePass_GivesWhatRepeatedReplacingGives) {
  const std::u16string pieces[] = {u"&",      u"amp;", u"lt;",    u"&amp;", u"&lt;",
                                   u"&quot;", u"<",    u">",      u"\"",    u"'",
                                   u"&gt",    u"a",    u"&apos;", u"&#38;", u"&AMP;"};
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (unsigned i = random() % 8; i > 0; --i) text += pieces[random() % std::size(pieces)];
    const SPUString given{std::u16string_view(text)};
    ASSERT_EQ(std::u16string(SPXMLObject::escapeText(given)), escapedSlowly(text));
    ASSERT_EQ(std::u16string(SPXMLObject::unescapeText(given)), unescapedSlowly(text));
  }
}

TEST(Entities, KnownTexts) {
  const auto escape = [](const char16_t* text) { return SPXMLObject::escapeText(SPUString(text)); };
  EXPECT_TRUE(escape(u"a < b & c") == SPUString(u"a &lt; b &amp; c"));
  EXPECT_TRUE(escape(u"&amp;&#38;") == SPUString(u"&amp;&amp;#38;"));
  EXPECT_TRUE(escape(u"say \"hi\" it's") == SPUString(u"say &quot;hi&quot; it&apos;s"));
  const auto plain = [](const char16_t* text) {
    return SPXMLObject::unescapeText(SPUString(text));
  };
  EXPECT_TRUE(plain(u"&lt;tag&gt; &amp;lt; &amp;amp; &unknown;") ==
              SPUString(u"<tag> < & &unknown;"));
}

}  // namespace
}  // namespace tolvanix
