// Queries of documents: by the rules for each, which search the text afresh. The input is the name
// of an element, that of an attribute, the place to start from, and the document.
#include "fuzz.h"
#include "inventory/SPXMLData.h"
#include "xml/SPXMLObject.h"
#include "xml/SPXMLStatus.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix::fuzz {

namespace naive {

namespace {

using Text = std::u16string;
constexpr std::size_t kNone = Text::npos;

Text elementName(const Text& text) {
  std::size_t open = text.find(u'<');
  while (open != kNone) {
    std::size_t end = open + 1;
    while (end < text.size() && text[end] != u' ' && text[end] != u'>' && text[end] != u'/') ++end;
    Text name = text.substr(open + 1, end - open - 1);
    if (name.empty() || name[0] != u'?') return name;
    open = text.find(u'<', end);
  }
  return {};
}

Text startTag(const Text& text, const Text& name, std::size_t start) {
  for (;;) {
    const std::size_t open = text.find(u"<" + name, start);
    if (open == kNone) return {};
    const std::size_t close = text.find(u'>', open);
    Text tag = text.substr(open, close == kNone ? kNone : close - open + 1);
    if (elementName(tag) == name) return tag;
    if (close == kNone) return {};
    start = close + 1;
  }
}

Text closeTag(const Text& name) {
  return u"</" + name + u">";
}

bool isSelfClosing(const Text& tag) {
  return tag.size() > 1 && tag.substr(tag.size() - 2) == u"/>";
}

std::size_t elementEnd(const Text& text, const Text& name, std::size_t start) {
  const Text tag = startTag(text, name, start);
  if (tag.empty()) return kNone;
  const Text end = isSelfClosing(tag) ? tag : closeTag(name);
  const std::size_t at = text.find(end, start);
  return at == kNone ? kNone : at + end.size();
}

Text extract(const Text& text, const Text& name, std::size_t start, bool withTags) {
  const Text tag = startTag(text, name, start);
  if (tag.empty()) return {};
  if (isSelfClosing(tag)) return withTags ? tag : Text();
  const std::size_t first = text.find(tag, start);
  const std::size_t end = text.find(closeTag(name), first);
  if (end == kNone) return {};
  if (withTags) return text.substr(first, end + closeTag(name).size() - first);
  return end > first + tag.size() ? text.substr(first + tag.size(), end - first - tag.size())
                                  : Text();
}

Text cData(const Text& text, const Text& name) {
  Text inner = extract(text, name, 0, false);
  const std::size_t first = inner.find(u"<![CDATA[");
  const std::size_t end = first == kNone ? kNone : inner.find(u"]]>", first + 9);
  if (end == kNone) return inner;
  Text section = inner.substr(first + 9, end - first - 9);
  while (section.starts_with(u' ')) section.erase(0, 1);
  while (section.ends_with(u' ')) section.pop_back();
  return section;
}

Text attributePair(const Text& element, const Text& attribute) {
  const std::size_t at = element.find(attribute);
  if (at == kNone) return {};
  const std::size_t bracket = element.find(u'>', at);
  const std::size_t quote = element.find(u'"', at);
  const std::size_t second = quote == kNone ? kNone : element.find(u'"', quote + 1);
  if (second != kNone && second < bracket) return element.substr(at, second + 1 - at);
  const std::size_t end = element.find_first_of(u"/>", at);
  return element.substr(at, end == kNone ? kNone : end - at);
}

std::vector<Text> attributePairs(const std::vector<Text>& elements, const Text& attribute) {
  std::vector<Text> pairs;
  for (const Text& element : elements) {
    const Text pair = attributePair(element, attribute);
    if (!pair.empty()) pairs.push_back(pair);
  }
  return pairs;
}

Text insertChild(const Text& text, const Text& name, const Text& child) {
  Text result;
  for (Text element : elements(text, name)) {
    const std::size_t close = element.find(closeTag(name));
    if (close != kNone) {
      element.replace(close, closeTag(name).size(), child + closeTag(name));
    } else {
      element.replace(element.find(u"/>"), 2, u">" + child + closeTag(name));
    }
    result += element;
  }
  return result;
}

Text rewritten(const Text& text, const Text& name, const std::vector<Text>& attributes) {
  Text written = u"<" + name;
  for (const Text& each : attributes) {
    const Text value = attribute(elements(text, name), each);
    if (!value.empty()) written += u" " + each + u"=\"" + escaped(value) + u"\" ";
  }
  written += u">";
  for (const Text& message : elements(text, u"Message")) {
    const Text inner = extract(message, u"Message", 0, false);
    written += u"<Message>" + escaped(inner) + u"</Message>";
  }
  return written + closeTag(name);
}

}  // namespace

std::vector<Text> elements(const Text& text, const Text& name) {
  std::vector<Text> found;
  std::size_t start = 0;
  for (Text whole = extract(text, name, start, true); !whole.empty();
       whole = extract(text, name, start, true)) {
    found.push_back(whole);
    start = elementEnd(text, name, start);
    if (start == kNone) break;
  }
  return found;
}

std::vector<Text> attributeValues(const std::vector<Text>& elements, const Text& attribute) {
  std::vector<Text> values;
  for (const Text& pair : attributePairs(elements, attribute)) {
    const std::size_t equals = pair.find(u'=');
    const std::size_t quote = equals == kNone ? kNone : pair.find(u'"', equals);
    if (quote != kNone && quote + 1 < pair.size() - 1) {
      values.push_back(pair.substr(quote + 1, pair.size() - 1 - (quote + 1)));
    }
  }
  return values;
}

Text attribute(const std::vector<Text>& elements, const Text& attribute) {
  const auto values = attributeValues(elements, attribute);
  return values.empty() ? Text() : unescaped(values[0]);
}

}  // namespace naive

void query(std::string_view input) {
  const SPUString name(naive::widen(takePart(input)));
  const SPUString attribute(naive::widen(takePart(input)));
  const std::string_view place = takePart(input);
  const SPUString text(naive::widen(input));
  const std::size_t start =
      place.empty() ? 0 : static_cast<unsigned char>(place[0]) * text.size() / 255;
  const auto position = static_cast<std::int32_t>(start);

  SPXMLObject document;
  document.setXML(text);
  expectEqual("root", document.getRootName(), naive::elementName(text));
  expectEqual("start tag", SPXMLObject::findStartTag(text, name, position),
              naive::startTag(text, name, start));
  expectEqual("end", SPXMLObject::findElementEnd(text, name, position),
              static_cast<std::int32_t>(naive::elementEnd(text, name, start)));
  for (const bool withTags : {false, true}) {
    expectEqual("element", SPXMLObject::extractElement(text, name, position, withTags),
                naive::extract(text, name, start, withTags));
  }
  expectEqual("inner text", document.getElementText(name), naive::extract(text, name, 0, false));
  expectEqual("CDATA", SPXMLObject::getElementCData(text, name), naive::cData(text, name));
  const auto same = [](const char* what, const std::vector<SPUString>& found,
                       const std::vector<std::u16string>& expected) {
    expectEqual(what, std::vector<std::u16string>(found.begin(), found.end()), expected);
  };
  const auto elements = naive::elements(text, name);
  same("elements", document.getElements(name), elements);
  same("pairs", SPXMLObject::getAttributePairs(text, name, attribute),
       naive::attributePairs(elements, attribute));
  const auto values = naive::attributeValues(elements, attribute);
  same("values", document.getAttributeValues(name, attribute), values);
  const std::u16string first = values.empty() ? std::u16string() : values[0];
  expectEqual("attribute", document.getAttribute(name, attribute), first);
  expectEqual("number", document.getAttributeInt(name, attribute),
              naive::decimal(first).value_or(0));
  expectEqual("insertion", SPXMLObject::insertChild(text, name, attribute),
              naive::insertChild(text, name, attribute));

  expectEqual("Validation", SPXMLValidation(text).generateXML(),
              naive::rewritten(text, u"Validation", {u"type", u"result"}));
  const auto status = naive::rewritten(text, u"SPStatus", {u"result", u"reboot", u"extMessage"});
  const auto statuses = naive::elements(text, u"SPStatus");
  const bool hasResult = !naive::attribute(statuses, u"result").empty();
  expectEqual("SPStatus", SPXMLStatus(text).generateXML(), hasResult ? status : u"");

  const SPXMLData data(text);
  expectEqual("devices", data.getDevices().size(), naive::elements(text, u"Device").size());
  expectEqual("root", SPXMLObject::getElementName(data.generateXML()), document.getRootName());
}

}  // namespace tolvanix::fuzz
