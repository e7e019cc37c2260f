#include "xml/Entities.h"

#include <algorithm>
#include <cstddef>
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

}  // namespace

// Both take one pass; what they give is what replacing one entity after the other, each time from
// the start of the text again, would give.

void appendEscaped(std::u16string& out, View text) {
  for (; !text.empty(); text.remove_prefix(1)) {
    const char16_t unit = text.front();
    const Entity* const entity = entityOf(unit);
    const bool isEntityAlready = unit == u'&' && entityWithTail(text.substr(1)) != nullptr;
    if (entity == nullptr || isEntityAlready) {
      out += unit;
    } else {
      out += entity->text;
    }
  }
}

std::u16string unescaped(std::u16string text) {
  constexpr View kAmpersandTail = u"amp;";
  const std::size_t first = text.find(u'&');
  if (first == View::npos) return text;
  // In place: an entity is longer than its character.
  View rest = View(text).substr(first);
  auto out = text.begin() + static_cast<std::ptrdiff_t>(first);
  while (!rest.empty()) {
    *out = rest.front();
    rest.remove_prefix(1);
    if (*out == u'&') {
      // "&amp;" gives a "&" that can begin an entity with what follows, "&amp;" again included.
      while (rest.starts_with(kAmpersandTail)) rest.remove_prefix(kAmpersandTail.size());
      if (const Entity* const entity = entityWithTail(rest)) {
        *out = entity->character;
        rest.remove_prefix(entity->text.size() - 1);
      }
    }
    ++out;
  }
  text.erase(out, text.end());
  return text;
}

}  // namespace tolvanix
