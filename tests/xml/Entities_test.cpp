#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "xml/SPXMLObject.h"

namespace tolvanix::test {
namespace {

TEST(Entities, EscapeAndUnescape_KnowTheFiveEntities) {
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
      {u"&", u"&amp;", u"&"},
      {u"&gt", u"&amp;gt", u"&gt"},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(SPXMLObject::escapeText(SPUString(row.text)) == SPUString(row.escaped));
    EXPECT_TRUE(SPXMLObject::unescapeText(SPUString(row.text)) == SPUString(row.unescaped));
  }
}

// As it is described: one replacement at a time, each time from the start.
TEST(Entities, Unescape_InOnePassGivesWhatRepeatedReplacingGives) {
  const std::pair<std::u16string, std::u16string> entities[] = {
      {u"&", u"&amp;"}, {u"<", u"&lt;"}, {u">", u"&gt;"}, {u"\"", u"&quot;"}, {u"'", u"&apos;"}};
  const std::u16string pieces[] = {u"&",   u"amp;", u"lt;", u"&amp;", u"&lt;",   u"&quot;",
                                   u"&gt", u"a",    u";",   u"quot;", u"&apos;", u"&#38;"};
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (unsigned i = random() % 8; i > 0; --i) text += pieces[random() % std::size(pieces)];
    const SPUString given{std::u16string_view(text)};
    for (const auto& [character, entity] : entities) {
      for (std::size_t at = text.find(entity); at != text.npos; at = text.find(entity)) {
        text.replace(at, entity.size(), character);
      }
    }
    ASSERT_EQ(std::u16string(SPXMLObject::unescapeText(given)), text);
  }
}

}  // namespace
}  // namespace tolvanix::test
