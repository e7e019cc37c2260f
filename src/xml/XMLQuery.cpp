#include "xml/XMLQuery.h"

namespace tolvanix::xmlquery {

namespace {

constexpr std::size_t kNotFound = View::npos;

// A start tag and whether tags that only begin with the name were passed over before it.
struct Tag {
  View text;
  bool passedOthers = false;
};

Tag findTag(View text, View name, std::size_t start) {
  Tag tag;
  const std::u16string open = std::u16string(u"<").append(name);
  for (std::size_t at = text.find(open, start); at != kNotFound; at = text.find(open, at)) {
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

// Where the tag's text first is at or after `start`. Usually that is the tag itself; a tag that
// was passed over can hold the same text.
std::size_t tagPosition(View text, const Tag& tag, std::size_t start) {
  if (tag.passedOthers) return text.find(tag.text, start);
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

std::u16string closeTag(View name) {
  return std::u16string(u"</").append(name).append(u">");
}

View startTag(View text, View name, std::size_t start) {
  return findTag(text, name, start).text;
}

std::optional<std::size_t> elementEnd(View text, View name, std::size_t start) {
  const Tag tag = findTag(text, name, start);
  if (tag.text.empty()) return std::nullopt;
  if (isSelfClosing(tag.text)) return tagPosition(text, tag, start) + tag.text.size();
  const std::u16string endTag = closeTag(name);
  const std::size_t close = text.find(endTag, start);
  if (close == kNotFound) return std::nullopt;
  return close + endTag.size();
}

std::optional<Element> element(View text, View name, std::size_t start) {
  const Tag tag = findTag(text, name, start);
  if (tag.text.empty()) return std::nullopt;
  const std::size_t first = tagPosition(text, tag, start);
  if (isSelfClosing(tag.text)) {
    return Element{text.substr(first, tag.text.size()), {}, first + tag.text.size()};
  }
  // The next search goes on after the first closing tag from `start` on, even a stray one before
  // this element; the element ends at the first one after its own start.
  const std::u16string endTag = closeTag(name);
  const std::size_t next = text.find(endTag, start);
  const std::size_t close = next == kNotFound || next >= first ? next : text.find(endTag, first);
  if (close == kNotFound) return std::nullopt;
  const std::size_t inner = first + tag.text.size();
  const std::size_t innerSize = close > inner ? close - inner : 0;
  return Element{text.substr(first, close + endTag.size() - first), text.substr(inner, innerSize),
                 next + endTag.size()};
}

std::optional<Element> nextElement(View text, View name, const Element& previous) {
  const auto first = static_cast<std::size_t>(previous.whole.data() - text.data());
  if (previous.next > first) return element(text, name, previous.next);
  const std::u16string endTag = closeTag(name);
  Element again = previous;
  again.next = text.find(endTag, previous.next) + endTag.size();
  return again;
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
  const std::size_t first = elementText.find(attribute);
  if (first == kNotFound) return {};
  const View rest = elementText.substr(first);
  // Up to the second quote, if that is in the tag.
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
  for (auto found = first; found; found = nextElement(searched, elementName, *found)) {
    const View result = attributeValue(attributePair(found->whole, attribute));
    if (!result.empty()) return result;
  }
  return {};
}

void AttributeReader::read(SPXMLAttribute& attribute) const {
  attribute.setValue(value(attribute.getName()));
}

}  // namespace tolvanix::xmlquery
