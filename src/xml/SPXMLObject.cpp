#include "xml/SPXMLObject.h"

#include <optional>
#include <string_view>
#include <utility>

#include "platform/SPModuleFile.h"
#include "xml/Entities.h"
#include "xml/Numbers.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {

using View = std::u16string_view;

SPUString copy(View text) {
  return SPUString(std::u16string(text));
}

std::optional<xmlquery::Element> elementFrom(const SPUString& text, const SPUString& name,
                                             std::int32_t start) {
  return xmlquery::element(text, name, static_cast<std::size_t>(start));
}

}  // namespace

void SPXMLObject::loadXMLFile(const SPString& path) {
  xml = SPModuleFile(path.c_str()).getText();
}

SPUString SPXMLObject::getElementName(const SPUString& text) {
  return copy(xmlquery::elementName(text));
}

SPUString SPXMLObject::getRootName() const {
  return getElementName(xml);
}

SPUString SPXMLObject::findStartTag(const SPUString& text, const SPUString& name,
                                    std::int32_t start) {
  return copy(xmlquery::startTag(text, name, static_cast<std::size_t>(start)));
}

std::int32_t SPXMLObject::findElementEnd(const SPUString& text, const SPUString& name,
                                         std::int32_t start) {
  const auto end = xmlquery::elementEnd(text, name, static_cast<std::size_t>(start));
  return end ? static_cast<std::int32_t>(*end) : -1;
}

SPUString SPXMLObject::extractElement(const SPUString& text, const SPUString& name,
                                      std::int32_t start, bool withTags) {
  const auto found = elementFrom(text, name, start);
  if (!found) return {};
  return copy(withTags ? found->whole : found->inner);
}

SPUString SPXMLObject::getElementText(const SPUString& text, const SPUString& name) {
  return copy(xmlquery::innerText(text, name));
}

SPUString SPXMLObject::getElementText(const SPUString& name) const {
  return getElementText(xml, name);
}

SPUString SPXMLObject::getElementCData(const SPUString& text, const SPUString& name) {
  constexpr View kOpen = u"<![CDATA[";
  SPUString inner = getElementText(text, name);
  const std::size_t open = inner.find(kOpen);
  if (open == SPUString::npos) return inner;
  const std::size_t first = open + kOpen.size();
  const std::size_t end = inner.find(u"]]>", first);
  if (end == SPUString::npos) return inner;
  return copy(View(inner).substr(first, end - first)).trim();
}

std::vector<SPUString> SPXMLObject::getElements(const SPUString& text, const SPUString& name) {
  std::vector<SPUString> elements;
  xmlquery::forEachElement(text, name, [&](View element) {
    elements.push_back(copy(element));
    return true;
  });
  return elements;
}

std::vector<SPUString> SPXMLObject::getElements(const SPUString& name) const {
  return getElements(xml, name);
}

std::vector<SPUString> SPXMLObject::getAttributePairs(const SPUString& text,
                                                      const SPUString& element,
                                                      const SPUString& attribute) {
  std::vector<SPUString> pairs;
  xmlquery::forEachElement(text, element, [&](View elementText) {
    const View pair = xmlquery::attributePair(elementText, attribute);
    if (!pair.empty()) pairs.push_back(copy(pair));
    return true;
  });
  return pairs;
}

std::vector<SPUString> SPXMLObject::getAttributeValues(const SPUString& text,
                                                       const SPUString& element,
                                                       const SPUString& attribute) {
  std::vector<SPUString> values;
  for (const SPUString& pair : getAttributePairs(text, element, attribute)) {
    const View value = xmlquery::attributeValue(pair);
    if (!value.empty()) values.push_back(copy(value));
  }
  return values;
}

std::vector<SPUString> SPXMLObject::getAttributeValues(const SPUString& element,
                                                       const SPUString& attribute) const {
  return getAttributeValues(xml, element, attribute);
}

SPUString SPXMLObject::getAttribute(const SPUString& element, const SPUString& attribute) const {
  return copy(xmlquery::AttributeReader(xml, element).value(attribute));
}

SPString SPXMLObject::getAttribute(const SPString& element, const SPString& attribute) const {
  return SPString(getAttribute(SPUString(element), SPUString(attribute)).c_str());
}

std::int32_t SPXMLObject::getAttributeInt(const SPUString& element,
                                          const SPUString& attribute) const {
  return readDecimal(getAttribute(element, attribute)).value_or(0);
}

std::int32_t SPXMLObject::getAttributeInt(const SPString& element,
                                          const SPString& attribute) const {
  return getAttributeInt(SPUString(element), SPUString(attribute));
}

SPUString SPXMLObject::makeCloseTag(const SPUString& name) {
  return SPUString(xmlquery::closeTag(name));
}

SPUString SPXMLObject::escapeText(const SPUString& text) {
  std::u16string escaped;
  appendEscaped(escaped, text);
  return SPUString(std::move(escaped));
}

SPUString SPXMLObject::unescapeText(const SPUString& text) {
  return SPUString(unescaped(std::u16string(View(text))));
}

SPUString SPXMLObject::buildElement(const SPUString& name,
                                    const std::vector<SPXMLAttribute>& attributes,
                                    const SPUString& inner) {
  std::u16string element = u"<";
  element += name;
  for (const SPXMLAttribute& attribute : attributes) attribute.appendTo(element);
  element.append(u">").append(inner).append(xmlquery::closeTag(name));
  return SPUString(std::move(element));
}

SPUString SPXMLObject::insertChild(const SPUString& text, const SPUString& name,
                                   const SPUString& child) {
  const SPUString closeTag = makeCloseTag(name);
  std::u16string result;
  xmlquery::forEachElement(text, name, [&](View element) {
    const std::size_t closing = element.find(closeTag);
    if (closing != View::npos) {
      result += element.substr(0, closing);
      result += child;
      result += element.substr(closing);
    } else {
      const std::size_t selfClosing = element.find(u"/>");
      result += element.substr(0, selfClosing);
      result += u'>';
      result += child;
      result += closeTag;
      result += element.substr(selfClosing + 2);
    }
    return true;
  });
  return SPUString(std::move(result));
}

}  // namespace tolvanix
