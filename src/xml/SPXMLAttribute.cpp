#include "xml/SPXMLAttribute.h"

#include <utility>

#include "xml/Entities.h"

namespace tolvanix {

SPXMLAttribute::SPXMLAttribute(std::u16string_view attributeName) : name(attributeName) {}

SPXMLAttribute::SPXMLAttribute(std::u16string_view attributeName, std::uint32_t number)
    : name(attributeName), value(number) {}

SPXMLAttribute::SPXMLAttribute(std::u16string_view attributeName, const SPString& text)
    : name(attributeName) {
  setValue(SPUString(text));
}

void SPXMLAttribute::setValue(std::u16string_view text) {
  std::u16string plain;
  appendUnescaped(plain, text);
  value = SPUString(std::move(plain));
}

SPUString SPXMLAttribute::format() const {
  std::u16string text;
  appendTo(text);
  return SPUString(std::move(text));
}

void SPXMLAttribute::appendTo(std::u16string& out) const {
  if (name.empty() || value.empty()) return;
  out += u' ';
  out += name;
  out += u"=\"";
  appendEscaped(out, value);
  out += u"\" ";
}

}  // namespace tolvanix
