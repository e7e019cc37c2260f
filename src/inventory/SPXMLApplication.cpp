#include "inventory/SPXMLApplication.h"

#include "xml/SPXMLObject.h"

namespace tolvanix {

SPXMLApplication::SPXMLApplication(const SPUString& name, const SPString& type,
                                   const SPString& subComponent, const SPString& versionText)
    : componentType("componentType", type),
      subComponentID("subComponentID", subComponent),
      version("version", versionText) {
  setDisplay(name);
}

SPUString SPXMLApplication::generateXML() const {
  const SPUString element = SPXMLObject::buildElement(
      elementName, {componentType, subComponentID, version, display}, SPUString());
  if (packageVersion.getValue().empty()) return element;
  return SPXMLObject::insertChild(
      element, elementName,
      SPXMLObject::buildElement(SPUString(u"Package"), {packageVersion}, SPUString()));
}

void SPXMLApplication::parseXML(const SPUString& text) {
  elementName = u"Application";
  for (SPXMLAttribute* attribute : {&display, &componentType, &subComponentID, &version}) {
    attribute->readFrom(text, elementName);
  }
  // The last version of the last Package stays.
  for (const SPUString& value :
       SPXMLObject::getAttributeValues(text, SPUString(u"Package"), SPUString(u"version"))) {
    packageVersion.setValue(value);
  }
}

}  // namespace tolvanix
