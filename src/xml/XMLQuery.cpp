#include "xml/XMLQuery.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace tolvanix::xmlquery {

namespace {

constexpr std::size_t kNotFound = View::npos;

// Eight units at once: a vector type of the compilers (gcc and clang).
using Units [[gnu::vector_size(16)]] = std::uint16_t;
constexpr std::size_t kUnits = sizeof(Units) / sizeof(char16_t);

Units loadUnits(const char16_t* from) {
  Units units;
  std::memcpy(&units, from, sizeof units);
  return units;
}

// A name with what must stand directly before and behind it; searched for without joining them.
class Wanted {
 public:
  Wanted(View markBefore, View wantedName, View markBehind)
      : before(markBefore), name(wantedName), behind(markBehind) {}

  std::size_t size() const { return before.size() + name.size() + behind.size(); }
  char16_t front() const { return before.empty() ? name.front() : before.front(); }
  char16_t back() const {
    return behind.empty() ? (name.empty() ? before : name).back() : behind.back();
  }
  // `text` has at least `size` units.
  bool standsAt(const char16_t* text) const {
    const char16_t* const nameAt = text + before.size();
    return equal(nameAt, name) && equal(text, before) && equal(nameAt + name.size(), behind);
  }

 private:
  static bool equal(const char16_t* units, View text) {
    return text.empty() || std::memcmp(units, text.data(), text.size() * sizeof(char16_t)) == 0;
  }

  View before;
  View name;
  View behind;
};

// The first and the last unit of a wanted text, each eight times.
struct Ends {
  Units first;
  Units last;

  // Where among eight places both fit: all 16 bits of such a place are set.
  Units fit(const char16_t* firsts, const char16_t* lasts) const {
    return std::bit_cast<Units>((loadUnits(firsts) == first) & (loadUnits(lasts) == last));
  }
};

using Lanes = std::array<std::uint64_t, 2>;

bool any(Units places) {
  const auto lanes = std::bit_cast<Lanes>(places);
  return (lanes[0] | lanes[1]) != 0;
}

// How many places from `from` on, in whole strides, surely do not fit.
std::size_t skipPlaces(const char16_t* firsts, const char16_t* lasts, std::size_t count,
                       const Ends& ends) {
  constexpr std::size_t kStride = 4 * kUnits;
  std::size_t skipped = 0;
  for (; skipped + kStride <= count; skipped += kStride) {
    Units places = {};
    for (std::size_t i = 0; i < kStride; i += kUnits) {
      places |= ends.fit(firsts + skipped + i, lasts + skipped + i);
    }
    if (any(places)) break;
  }
  return skipped;
}

// The first place of `wanted` at or after `from`. Most places are ruled out many at a time, because
// their first or last unit differs.
std::size_t findText(View text, const Wanted& wanted, std::size_t from) {
  if (text.size() < wanted.size() || from > text.size() - wanted.size()) return kNotFound;
  if (wanted.size() == 0) return from;
  const Ends ends = {Units{} + static_cast<std::uint16_t>(wanted.front()),
                     Units{} + static_cast<std::uint16_t>(wanted.back())};
  const std::size_t end = text.size() - wanted.size() + 1;  // of the places
  const char16_t* const firsts = text.data();
  const char16_t* const lasts = firsts + wanted.size() - 1;
  from += skipPlaces(firsts + from, lasts + from, end - from, ends);
  for (; from + kUnits <= end; from += kUnits) {
    const auto lanes = std::bit_cast<Lanes>(ends.fit(firsts + from, lasts + from));
    for (std::size_t half = 0; half < lanes.size(); ++half) {
      for (std::uint64_t left = lanes[half]; left != 0;) {
        const auto lane = static_cast<std::size_t>(std::countr_zero(left)) / 16;
        const std::size_t place = from + half * (kUnits / 2) + lane;
        if (wanted.standsAt(firsts + place)) return place;
        left &= ~(std::uint64_t{0xFFFF} << (lane * 16));
      }
    }
  }
  for (; from < end; ++from) {
    if (lasts[from] == wanted.back() && wanted.standsAt(firsts + from)) return from;
  }
  return kNotFound;
}

Wanted opening(View name) {
  return {u"<", name, {}};
}

Wanted closing(View name) {
  return {u"</", name, u">"};
}

// A start tag and whether tags that only begin with the name were passed over before it.
struct Tag {
  View text;
  bool passedOthers = false;
};

Tag findTag(View text, View name, std::size_t start) {
  Tag tag;
  const Wanted open = opening(name);
  for (std::size_t at = findText(text, open, start); at != kNotFound;
       at = findText(text, open, at)) {
    const std::size_t close = findText(text, {u">", {}, {}}, at);
    const View candidate = close == kNotFound ? text.substr(at) : text.substr(at, close - at + 1);
    if (elementName(candidate) == name) {
      tag.text = candidate;
      return tag;
    }
    if (close == kNotFound) return tag;
    tag.passedOthers = true;
    at = close + 1;
  }
  return tag;
}

// Where the tag's text first stands at or after `start`. Usually that is the tag itself; a tag that
// was passed over can hold the same text.
std::size_t tagPosition(View text, const Tag& tag, std::size_t start) {
  if (tag.passedOthers) return findText(text, {tag.text, {}, {}}, start);
  return static_cast<std::size_t>(tag.text.data() - text.data());
}

bool isSelfClosing(View tag) {
  return tag.ends_with(u"/>");
}

// Of the white space only the blank ends a name.
bool endsName(char16_t unit) {
  return unit == u' ' || unit == u'>' || unit == u'/';
}

}  // namespace

View elementName(View text) {
  std::size_t open = text.find(u'<');
  while (open != kNotFound) {
    const std::size_t first = open + 1;
    std::size_t end = first;
    while (end < text.size() && !endsName(text[end])) ++end;
    const View name = text.substr(first, end - first);
    if (!name.starts_with(u'?')) return name;
    open = text.find(u'<', end);
  }
  return {};
}

View startTag(View text, View name, std::size_t start) {
  return findTag(text, name, start).text;
}

std::optional<std::size_t> elementEnd(View text, View name, std::size_t start) {
  const Tag tag = findTag(text, name, start);
  if (tag.text.empty()) return std::nullopt;
  if (isSelfClosing(tag.text)) return tagPosition(text, tag, start) + tag.text.size();
  const Wanted closeTag = closing(name);
  const std::size_t close = findText(text, closeTag, start);
  if (close == kNotFound) return std::nullopt;
  return close + closeTag.size();
}

std::optional<Element> element(View text, View name, std::size_t start) {
  const Tag tag = findTag(text, name, start);
  if (tag.text.empty()) return std::nullopt;
  const std::size_t first = tagPosition(text, tag, start);
  if (isSelfClosing(tag.text)) {
    return Element{tag.text, {}, first + tag.text.size()};
  }
  // The next search goes on behind the first closing tag after `start`, even a stray one before
  // this element; the element ends at the first one after its own start.
  const Wanted closeTag = closing(name);
  const std::size_t next = findText(text, closeTag, start);
  const std::size_t close =
      next == kNotFound || next >= first ? next : findText(text, closeTag, first);
  if (close == kNotFound) return std::nullopt;
  const std::size_t inner = first + tag.text.size();
  const std::size_t innerSize = close > inner ? close - inner : 0;
  return Element{text.substr(first, close + closeTag.size() - first), text.substr(inner, innerSize),
                 next + closeTag.size()};
}

View innerText(View text, View name) {
  const auto found = element(text, name, 0);
  return found ? found->inner : View();
}

View lastElement(View text, View name) {
  View last;
  forEachElement(text, name, [&](View element) {
    last = element;
    return true;
  });
  return last;
}

View attributePair(View elementText, View attribute) {
  const std::size_t first = findText(elementText, {{}, attribute, {}}, 0);
  if (first == kNotFound) return {};
  const View rest = elementText.substr(first);
  // Up to the second quote, if that stands in the tag.
  int quotes = 0;
  for (std::size_t i = 0; i < rest.size() && rest[i] != u'>'; ++i) {
    if (rest[i] == u'"' && ++quotes == 2) return rest.substr(0, i + 1);
  }
  return rest.substr(0, rest.find_first_of(u"/>"));
}

View attributeValue(View pair) {
  const std::size_t equals = pair.find(u'=');
  if (equals == kNotFound) return {};
  const std::size_t quote = pair.find(u'"', equals);
  if (quote == kNotFound || quote + 2 >= pair.size()) return {};
  return pair.substr(quote + 1, pair.size() - quote - 2);
}

AttributeReader::AttributeReader(View text, View name)
    : searched(text), elementName(name), first(element(text, name, 0)) {}

View AttributeReader::value(View attribute) const {
  for (auto found = first; found; found = element(searched, elementName, found->next)) {
    const View result = attributeValue(attributePair(found->whole, attribute));
    if (!result.empty()) return result;
  }
  return {};
}

void AttributeReader::read(SPXMLAttribute& attribute) const {
  attribute.setValue(value(attribute.getName()));
}

}  // namespace tolvanix::xmlquery
