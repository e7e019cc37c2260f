#include "xml/SPXMLAttribute.h"

#include <utility>

#include "text/Conversion.h"
#include "xml/Entities.h"

namespace tolvanix {

SPXMLAttribute::SPXMLAttribute(const char16_t* attributeName) : name(attributeName) {}

SPXMLAttribute::SPXMLAttribute(const char16_t* attributeName, std::uint32_t number)
    : name(attributeName), value(number) {}

SPXMLAttribute::SPXMLAttribute(const char16_t* attributeName, const SPString& text)
    : name(attributeName), value(unescaped(widen(text.c_str()))) {}

void SPXMLAttribute::setValue(std::u16string_view text) {
  value = SPUString(unescaped(std::u16string(text)));
}

SPUString SPXMLAttribute::format() const {
  std::u16string text;
  appendTo(text);
  return SPUString(std::move(text));
}

void SPXMLAttribute::appendTo(std::u16string& out) const {
  if (*name == u'\0' || value.empty()) return;
  out += u' ';
  out += name;
  out += u"=\"";
  appendEscaped(out, value);
  out += u"\" ";
}

}  // namespace tolvanix
