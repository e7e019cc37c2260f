#include "xml/Entities.h"

#include <algorithm>
#include <iterator>

namespace tolvanix {

namespace {

using View = std::u16string_view;

struct Entity {
  char16_t character;
  View text;
};
constexpr Entity kEntities[] = {
    {u'&', u"&amp;"}, {u'<', u"&lt;"}, {u'>', u"&gt;"}, {u'"', u"&quot;"}, {u'\'', u"&apos;"},
};

template <typename Matches>
const Entity* findEntity(Matches matches) {
  const auto* const found = std::find_if(std::begin(kEntities), std::end(kEntities), matches);
  return found != std::end(kEntities) ? found : nullptr;
}

const Entity* entityOf(char16_t unit) {
  return findEntity([unit](const Entity& entity) { return entity.character == unit; });
}

// The entity whose text, without its "&", the view begins with.
const Entity* entityWithTail(View view) {
  return findEntity(
      [view](const Entity& entity) { return view.starts_with(entity.text.substr(1)); });
}

bool isSpecial(char16_t unit) {
  return unit == u'&' || unit == u'<' || unit == u'>' || unit == u'"' || unit == u'\'';
}

}  // namespace

// Both take one pass; what they give is what replacing one entity after the other, each time from
// the start of the text again, would give.

void appendEscaped(std::u16string& out, View text) {
  while (!text.empty()) {
    const auto* const special = std::find_if(text.begin(), text.end(), isSpecial);
    const auto plain = static_cast<std::size_t>(special - text.begin());
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;
    const char16_t unit = text.front();
    text.remove_prefix(1);
    if (unit == u'&' && entityWithTail(text) != nullptr) {
      out += unit;
    } else {
      out += entityOf(unit)->text;
    }
  }
}

void appendUnescaped(std::u16string& out, View text) {
  constexpr View kAmpersandTail = u"amp;";
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find(u'&'), text.size());
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;
    // "&amp;" gives a "&" that can begin an entity with what follows, "&amp;" again included.
    text.remove_prefix(1);
    while (text.starts_with(kAmpersandTail)) text.remove_prefix(kAmpersandTail.size());
    const Entity* const entity = entityWithTail(text);
    out += entity != nullptr ? entity->character : u'&';
    if (entity != nullptr) text.remove_prefix(entity->text.size() - 1);
  }
}

}  // namespace tolvanix
