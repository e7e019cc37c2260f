#include "xml/XMLQuery.h"

#include <string>

namespace tolvanix::xmlquery {

namespace {

constexpr std::size_t kNotFound = View::npos;

// A start tag and whether tags that only begin with the name were passed over before it.
struct Tag {
  View text;
  bool passedOthers = false;
};

bool startsWithTag(View text, View name) {
  return text.size() > name.size() && text.substr(1, name.size()) == name;
}

// The first "<name" at or after `start`.
std::size_t findOpening(View text, View name, std::size_t start) {
  for (std::size_t at = text.find(u'<', start); at != kNotFound; at = text.find(u'<', at + 1)) {
    if (startsWithTag(text.substr(at), name)) return at;
  }
  return kNotFound;
}

Tag findTag(View text, View name, std::size_t start) {
  Tag tag;
  for (std::size_t at = findOpening(text, name, start); at != kNotFound;
       at = findOpening(text, name, at)) {
    const std::size_t close = text.find(u'>', at);
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
  if (tag.passedOthers) return text.find(tag.text, start);
  return static_cast<std::size_t>(tag.text.data() - text.data());
}

bool isSelfClosing(View tag) {
  return tag.ends_with(u"/>");
}

std::size_t findClosing(View text, View name, std::size_t start) {
  for (std::size_t at = text.find(u'<', start); at != kNotFound; at = text.find(u'<', at + 1)) {
    const View rest = text.substr(at + 1);
    if (rest.size() > name.size() + 1 && rest[0] == u'/' && rest[name.size() + 1] == u'>' &&
        rest.substr(1, name.size()) == name) {
      return at;
    }
  }
  return kNotFound;
}

std::size_t closingLength(View name) {
  return name.size() + 3;
}

}  // namespace

View elementName(View text) {
  std::size_t open = text.find(u'<');
  while (open != kNotFound) {
    const std::size_t first = open + 1;
    std::size_t end = text.find_first_of(u" >/", first);
    if (end == kNotFound) end = text.size();
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
  const std::size_t closing = findClosing(text, name, start);
  if (closing == kNotFound) return std::nullopt;
  return closing + closingLength(name);
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
  const std::size_t next = findClosing(text, name, start);
  const std::size_t closing =
      next == kNotFound || next >= first ? next : findClosing(text, name, first);
  if (closing == kNotFound) return std::nullopt;
  const std::size_t inner = first + tag.text.size();
  const std::size_t innerSize = closing > inner ? closing - inner : 0;
  const std::size_t wholeSize = closing + closingLength(name) - first;
  return Element{text.substr(first, wholeSize), text.substr(inner, innerSize),
                 next + closingLength(name)};
}

View attributePair(View elementText, View attribute) {
  const std::size_t first = elementText.find(attribute);
  if (first == kNotFound) return {};
  const View rest = elementText.substr(first);
  const std::size_t opening = rest.find(u'"');
  const std::size_t closing = opening == kNotFound ? kNotFound : rest.find(u'"', opening + 1);
  if (closing == kNotFound || closing > rest.find(u'>')) {
    return rest.substr(0, rest.find_first_of(u"/>"));
  }
  return rest.substr(0, closing + 1);
}

View attributeValue(View pair) {
  const std::size_t equals = pair.find(u'=');
  if (equals == kNotFound) return {};
  const std::size_t quote = pair.find(u'"', equals);
  if (quote == kNotFound || quote + 2 >= pair.size()) return {};
  return pair.substr(quote + 1, pair.size() - quote - 2);
}

View firstAttribute(View text, View name, View attribute) {
  View value;
  forEachElement(text, name, [&](View elementText) {
    value = attributeValue(attributePair(elementText, attribute));
    return value.empty();
  });
  return value;
}

}  // namespace tolvanix::xmlquery
