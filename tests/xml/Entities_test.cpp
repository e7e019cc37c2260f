#include <gtest/gtest.h>

#include "xml/SPXMLObject.h"

namespace tolvanix::test {
namespace {

TEST(Entities, OnePass_GivesWhatRepeatedReplacingWouldGive) {
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

}  // namespace
}  // namespace tolvanix::test
