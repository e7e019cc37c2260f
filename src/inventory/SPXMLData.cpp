#include "inventory/SPXMLData.h"

#include <utility>

#include "xml/Numbers.h"
#include "xml/Tags.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

SPXMLData::SPXMLData(const SPString& root, const SPString& language, std::uint32_t system)
    : rootName(root), lang(u"lang", language), systemID(system) {}

// The last device first: memory that goes back in the order opposite to its taking joins what is
// free behind it, which takes half the time where there are many devices.
SPXMLData::~SPXMLData() {
  while (!devices.empty()) devices.pop_back();
}

SPUString SPXMLData::generateXML() const {
  // About what a device with one application takes.
  constexpr std::size_t kDeviceUnits = 400;
  std::u16string document;
  document.reserve((devices.size() + 1) * kDeviceUnits);
  appendStartTag(document, rootName, {&lang});
  appendSystem(document);
  document += osInfo.generateXML();
  for (const SPXMLDevice& device : devices) device.appendXML(document);
  for (const SPXMLValidation& validation : validations) document += validation.generateXML();
  document += status.generateXML();
  appendEndTag(document, rootName);
  return SPUString(std::move(document));
}

void SPXMLData::appendSystem(std::u16string& out) const {
  if (readHexadecimal(systemID) < 1) return;
  SPXMLAttribute identifier(u"systemID");
  identifier.setValue(systemID);
  SPXMLAttribute model(u"systemModel");
  model.setValue(systemModel);
  appendStartTag(out, u"System", {&identifier, &model});
  appendEndTag(out, u"System");
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
