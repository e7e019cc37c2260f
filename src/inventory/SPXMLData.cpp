#include "inventory/SPXMLData.h"

#include "xml/Numbers.h"
#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

SPXMLData::SPXMLData(const SPString& root, const SPString& language, std::uint32_t system)
    : rootName(root), lang(u"lang", language), systemID(system) {}

SPUString SPXMLData::generateXML() const {
  SPUString children = systemElement();
  children += osInfo.generateXML();
  for (const SPXMLDevice& device : devices) children += device.generateXML();
  for (const SPXMLValidation& validation : validations) children += validation.generateXML();
  children += status.generateXML();
  return SPXMLObject::buildElement(rootName, {lang}, children);
}

SPUString SPXMLData::systemElement() const {
  if (readHexadecimal(systemID) < 1) return {};
  SPXMLAttribute identifier(u"systemID");
  identifier.setValue(systemID);
  SPXMLAttribute model(u"systemModel");
  model.setValue(systemModel);
  return SPXMLObject::buildElement(SPUString(u"System"), {identifier, model}, SPUString());
}

void SPXMLData::parseXML(std::u16string_view text) {
  rootName = xmlquery::elementName(text);
  xmlquery::AttributeReader(text, rootName).read(lang);
  const xmlquery::AttributeReader system(text, u"System");
  systemID = system.value(u"systemID");
  systemModel = system.value(u"systemModel");
  osInfo.parseXML(xmlquery::lastElement(text, u"OperatingSystem"));
  xmlquery::readElements(text, u"Device", devices);
  if (devices.empty()) xmlquery::readElements(text, u"Validation", validations);
  if (const auto last = xmlquery::lastElement(text, u"SPStatus"); !last.empty()) {
    status = SPXMLStatus(last);
  }
}

}  // namespace tolvanix
