#include "xml/SPXMLAttribute.h"

#include <utility>

#include "text/Conversion.h"
#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

SPXMLAttribute::SPXMLAttribute(const char* attributeName) : name(attributeName) {}

SPXMLAttribute::SPXMLAttribute(const char* attributeName, std::uint32_t number)
    : name(attributeName), value(number) {}

SPXMLAttribute::SPXMLAttribute(const char* attributeName, const SPString& text)
    : name(attributeName), value(SPXMLObject::unescapeText(SPUString(text))) {}

void SPXMLAttribute::setValue(const SPUString& text) {
  value = SPXMLObject::unescapeText(text);
}

void SPXMLAttribute::readFrom(std::u16string_view text, std::u16string_view element) {
  setValue(SPUString(std::u16string(xmlquery::firstAttribute(text, element, widen(name)))));
}

SPUString SPXMLAttribute::format() const {
  if (name.empty() || value.empty()) return {};
  std::u16string text = u" ";
  text += widen(name);
  text += u"=\"";
  text += SPXMLObject::escapeText(value);
  text += u"\" ";
  return SPUString(std::move(text));
}

}  // namespace tolvanix
