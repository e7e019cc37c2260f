#include "inventory/SPXMLData.h"

#include "xml/Numbers.h"
#include "xml/SPXMLObject.h"

namespace tolvanix {

namespace {

SPXMLAttribute attributeOf(const char* name, const SPUString& value) {
  SPXMLAttribute attribute(name);
  attribute.setValue(value);
  return attribute;
}

}  // namespace

SPXMLData::SPXMLData(const SPString& root, const SPString& language, std::uint32_t system)
    : rootName(root), lang("lang", language), systemID(system) {}

SPUString SPXMLData::systemElement() const {
  if (readHexadecimal(systemID) < 1) return {};
  return SPXMLObject::buildElement(
      SPUString(u"System"),
      {attributeOf("systemID", systemID), attributeOf("systemModel", systemModel)}, SPUString());
}

SPUString SPXMLData::generateXML() const {
  // Inserted at once: one after the other would search the growing text for every child.
  SPUString children = systemElement();
  children += osInfo.generateXML();
  for (const SPXMLDevice& device : devices) children += device.generateXML();
  for (const SPXMLValidation& validation : validations) children += validation.generateXML();
  children += status.generateXML();
  const SPUString root = SPXMLObject::buildElement(rootName, {lang}, SPUString());
  return SPXMLObject::insertChild(root, rootName, children);
}

void SPXMLData::parseXML(const SPUString& text) {
  SPXMLObject document;
  document.setXML(text);
  rootName = document.getRootName();
  lang.readFrom(text, rootName);
  systemID = document.getAttribute(SPUString(u"System"), SPUString(u"systemID"));
  systemModel = document.getAttribute(SPUString(u"System"), SPUString(u"systemModel"));
  const auto systems = document.getElements(SPUString(u"OperatingSystem"));
  osInfo.parseXML(systems.empty() ? SPUString() : systems.back());
  for (const SPUString& element : document.getElements(SPUString(u"Device"))) {
    devices.emplace_back(element);
  }
  if (devices.empty()) {
    for (const SPUString& element : document.getElements(SPUString(u"Validation"))) {
      validations.emplace_back(element);
    }
  }
  for (const SPUString& element : document.getElements(SPUString(u"SPStatus"))) {
    status = SPXMLStatus(element);
  }
}

}  // namespace tolvanix
