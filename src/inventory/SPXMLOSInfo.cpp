#include "inventory/SPXMLOSInfo.h"

#include <string>

#include "text/Conversion.h"
#include "text/SPString.h"
#include "xml/Numbers.h"
#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {

constexpr std::u16string_view kSystemElement = u"OperatingSystem";

SPXMLAttribute textAttribute(const char16_t* name, const SPUString& value) {
  SPXMLAttribute attribute(name);
  attribute.setValue(value);
  return attribute;
}

// A number without leading zeros.
SPXMLAttribute numberAttribute(const char16_t* name, std::uint32_t value) {
  return {name, SPString(std::to_string(value))};
}

}  // namespace

SPUString SPXMLOSInfo::generateXML() const {
  const SPXMLOSInfo now;
  return SPXMLObject::buildElement(SPUString(kSystemElement),
                                   {
                                       textAttribute(u"osVendor", now.osVendor),
                                       textAttribute(u"osArch", now.osArch),
                                       numberAttribute(u"majorVersion", now.majorVersion),
                                       numberAttribute(u"minorVersion", now.minorVersion),
                                       numberAttribute(u"spMajorVersion", now.spMajorVersion),
                                       numberAttribute(u"spMinorVersion", now.spMinorVersion),
                                   },
                                   SPUString());
}

void SPXMLOSInfo::parseXML(std::u16string_view text) {
  const xmlquery::AttributeReader attributes(text, kSystemElement);
  const auto number = [&](std::u16string_view attribute) {
    return static_cast<std::uint32_t>(readDecimal(attributes.value(attribute)).value_or(0));
  };
  majorVersion = number(u"majorVersion");
  minorVersion = number(u"minorVersion");
  spMajorVersion = number(u"spMajorVersion");
  spMinorVersion = number(u"spMinorVersion");
  osVendor = widen(narrow(attributes.value(u"osVendor")));
  attributes.read(display);
  osArch = attributes.value(u"osArch");
  if (osArch.empty()) osArch = u"na";
}

}  // namespace tolvanix
