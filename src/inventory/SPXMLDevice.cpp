#include "inventory/SPXMLDevice.h"

#include <algorithm>
#include <string_view>

#include "xml/Numbers.h"
#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {

std::int32_t decimalOrNone(const SPXMLAttribute& attribute) {
  return readDecimal(attribute.getValue()).value_or(-1);
}

// The rule by which an attribute counts as present when the element is written; it reads decimal
// texts alike, since it only asks for a digit.
bool holdsNumber(const SPXMLAttribute& attribute) {
  return readHexadecimal(attribute.getValue()) >= 0;
}

SPXMLAttribute decimalAttribute(const char* name, std::uint32_t number) {
  SPXMLAttribute attribute(name);
  attribute.setValue(SPUString(static_cast<std::int32_t>(number), SPUString::Decimal{}));
  return attribute;
}

}  // namespace

SPXMLDevice::SPXMLDevice(const SPString& name, std::uint32_t vendor, std::uint32_t subVendor,
                         std::uint32_t deviceNumber, std::uint32_t subDevice,
                         std::uint32_t busNumber, std::uint32_t slotNumber,
                         std::uint32_t functionNumber)
    : vendorID("vendorID", vendor),
      deviceID("deviceID", deviceNumber),
      subVendorID("subVendorID", subVendor),
      subDeviceID("subDeviceID", subDevice),
      display("display", name),
      bus(decimalAttribute("bus", busNumber)),
      device(decimalAttribute("device", slotNumber)),
      function(decimalAttribute("function", functionNumber)) {}

std::int32_t SPXMLDevice::getVendorID() const {
  return readHexadecimal(vendorID.getValue());
}
std::int32_t SPXMLDevice::getDeviceID() const {
  return readHexadecimal(deviceID.getValue());
}
std::int32_t SPXMLDevice::getSubVendorID() const {
  return readHexadecimal(subVendorID.getValue());
}
std::int32_t SPXMLDevice::getSubDeviceID() const {
  return readHexadecimal(subDeviceID.getValue());
}
std::int32_t SPXMLDevice::getBus() const {
  return decimalOrNone(bus);
}
std::int32_t SPXMLDevice::getDevice() const {
  return decimalOrNone(device);
}
std::int32_t SPXMLDevice::getFunction() const {
  return decimalOrNone(function);
}

std::vector<SPXMLAttribute> SPXMLDevice::writtenAttributes() const {
  std::vector<SPXMLAttribute> written = {componentID};
  if (holdsNumber(vendorID) && holdsNumber(deviceID) && holdsNumber(subVendorID) &&
      holdsNumber(subDeviceID)) {
    written.insert(written.end(), {vendorID, deviceID, subDeviceID, subVendorID});
    for (const SPXMLAttribute* place : {&bus, &device, &function}) {
      if (holdsNumber(*place)) written.push_back(*place);
    }
  }
  if (holdsNumber(enumerator)) written.push_back(enumerator);
  written.push_back(display);
  return written;
}

SPUString SPXMLDevice::generateXML() const {
  SPUString children;
  for (const SPXMLApplication& application : applications) children += application.generateXML();
  for (const SPXMLValidation& validation : validations) children += validation.generateXML();
  children += status.generateXML();
  const SPUString element =
      SPXMLObject::buildElement(elementName, writtenAttributes(), SPUString());
  return SPXMLObject::insertChild(element, elementName, children);
}

void SPXMLDevice::parseXML(const SPUString& text) {
  elementName = u"Device";
  for (SPXMLAttribute* attribute : {&display, &componentID, &vendorID, &subVendorID, &deviceID,
                                    &subDeviceID, &enumerator, &bus, &device, &function}) {
    attribute->readFrom(text, elementName);
  }
  for (const SPUString& element : SPXMLObject::getElements(text, SPUString(u"Validation"))) {
    validations.emplace_back(element);
  }
  for (const SPUString& element : SPXMLObject::getElements(text, SPUString(u"Application"))) {
    applications.emplace_back(element);
  }
  for (const SPUString& element : SPXMLObject::getElements(text, SPUString(u"SPStatus"))) {
    status = SPXMLStatus(element);
  }
}

}  // namespace tolvanix
