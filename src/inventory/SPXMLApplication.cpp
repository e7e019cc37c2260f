#include "inventory/SPXMLApplication.h"

#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {
constexpr std::u16string_view kApplicationElement = u"Application";
}

SPXMLApplication::SPXMLApplication(const SPUString& name, const SPString& type,
                                   const SPString& subComponent, const SPString& versionText)
    : componentType(u"componentType", type),
      subComponentID(u"subComponentID", subComponent),
      version(u"version", versionText) {
  setDisplay(name);
}

SPUString SPXMLApplication::generateXML() const {
  SPUString package;
  if (!packageVersion.getValue().empty()) {
    package = SPXMLObject::buildElement(SPUString(u"Package"), {packageVersion}, SPUString());
  }
  return SPXMLObject::buildElement(SPUString(kApplicationElement),
                                   {componentType, subComponentID, version, display}, package);
}

void SPXMLApplication::parseXML(std::u16string_view text) {
  const xmlquery::AttributeReader attributes(text, kApplicationElement);
  for (SPXMLAttribute* attribute : {&display, &componentType, &subComponentID, &version}) {
    attributes.read(*attribute);
  }
  // The last version of the last Package stays.
  xmlquery::forEachElement(text, u"Package", [this](std::u16string_view package) {
    const auto value = xmlquery::attributeValue(xmlquery::attributePair(package, u"version"));
    if (!value.empty()) packageVersion.setValue(value);
    return true;
  });
}

}  // namespace tolvanix
