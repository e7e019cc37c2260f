#include "inventory/SPXMLDevice.h"

#include <string_view>

#include "xml/Numbers.h"
#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {

constexpr std::u16string_view kDeviceElement = u"Device";

std::int32_t decimalOrNone(const SPXMLAttribute& attribute) {
  return readDecimal(attribute.getValue()).value_or(-1);
}

// The rule by which an attribute counts as present when the element is written; it reads decimal
// texts alike, since it only asks for a digit.
bool holdsNumber(const SPXMLAttribute& attribute) {
  return readHexadecimal(attribute.getValue()) >= 0;
}

SPXMLAttribute decimalAttribute(const char16_t* name, std::uint32_t number) {
  SPXMLAttribute attribute(name);
  attribute.setValue(SPUString(static_cast<std::int32_t>(number), SPUString::Decimal{}));
  return attribute;
}

}  // namespace

SPXMLDevice::SPXMLDevice(const SPString& name, std::uint32_t vendor, std::uint32_t subVendor,
                         std::uint32_t deviceNumber, std::uint32_t subDevice,
                         std::uint32_t busNumber, std::uint32_t slotNumber,
                         std::uint32_t functionNumber)
    : vendorID(u"vendorID", vendor),
      deviceID(u"deviceID", deviceNumber),
      subVendorID(u"subVendorID", subVendor),
      subDeviceID(u"subDeviceID", subDevice),
      display(u"display", name),
      bus(decimalAttribute(u"bus", busNumber)),
      device(decimalAttribute(u"device", slotNumber)),
      function(decimalAttribute(u"function", functionNumber)) {}

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

SPUString SPXMLDevice::generateXML() const {
  SPUString children;
  for (const SPXMLApplication& application : applications) children += application.generateXML();
  for (const SPXMLValidation& validation : validations) children += validation.generateXML();
  if (status) children += status->generateXML();
  return SPXMLObject::buildElement(SPUString(kDeviceElement), writtenAttributes(), children);
}

std::vector<SPXMLAttribute> SPXMLDevice::writtenAttributes() const {
  std::vector<SPXMLAttribute> written = {componentID};
  if (holdsNumber(vendorID) && holdsNumber(deviceID) && holdsNumber(subVendorID) &&
      holdsNumber(subDeviceID)) {
    written.insert(written.end(), {vendorID, deviceID, subDeviceID, subVendorID});
    for (const SPXMLAttribute& place : {bus, device, function}) {
      if (holdsNumber(place)) written.push_back(place);
    }
  }
  if (holdsNumber(enumerator)) written.push_back(enumerator);
  written.push_back(display);
  return written;
}

void SPXMLDevice::parseXML(std::u16string_view text) {
  const xmlquery::AttributeReader attributes(text, kDeviceElement);
  for (SPXMLAttribute* attribute : {&display, &componentID, &vendorID, &subVendorID, &deviceID,
                                    &subDeviceID, &enumerator, &bus, &device, &function}) {
    attributes.read(*attribute);
  }
  xmlquery::readElements(text, u"Validation", validations);
  xmlquery::readElements(text, u"Application", applications);
  if (const auto last = xmlquery::lastElement(text, u"SPStatus"); !last.empty()) {
    status.emplace(last);
  }
}

}  // namespace tolvanix
