#include "inventory/SPXMLOSInfo.h"

#include <string>

#include "text/SPString.h"
#include "xml/SPXMLObject.h"

namespace tolvanix {

namespace {

SPXMLAttribute textAttribute(const char* name, const SPUString& value) {
  SPXMLAttribute attribute(name);
  attribute.setValue(value);
  return attribute;
}

// A number without leading zeros.
SPXMLAttribute numberAttribute(const char* name, std::uint32_t value) {
  return {name, SPString(std::to_string(value))};
}

}  // namespace

SPUString SPXMLOSInfo::generateXML() const {
  const SPOSInfo now;
  return SPXMLObject::buildElement(SPUString(u"OperatingSystem"),
                                   {
                                       textAttribute("osVendor", now.osVendor),
                                       textAttribute("osArch", now.osArch),
                                       numberAttribute("majorVersion", now.majorVersion),
                                       numberAttribute("minorVersion", now.minorVersion),
                                       numberAttribute("spMajorVersion", now.spMajorVersion),
                                       numberAttribute("spMinorVersion", now.spMinorVersion),
                                   },
                                   SPUString());
}

void SPXMLOSInfo::parseXML(const SPUString& text) {
  SPXMLObject document;
  document.setXML(text);
  const SPString element("OperatingSystem");
  const auto number = [&](const char* attribute) {
    return static_cast<std::uint32_t>(document.getAttributeInt(element, SPString(attribute)));
  };
  majorVersion = number("majorVersion");
  minorVersion = number("minorVersion");
  spMajorVersion = number("spMajorVersion");
  spMinorVersion = number("spMinorVersion");
  osVendor = SPUString(document.getAttribute(element, SPString("osVendor")));
  display.readFrom(text, u"OperatingSystem");
  osArch = document.getAttribute(SPUString(element), SPUString(u"osArch"));
  if (osArch.empty()) osArch = u"na";
}

}  // namespace tolvanix
