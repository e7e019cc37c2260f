// One device of a document: its PCI identifiers, its place on the bus and its components.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "inventory/SPXMLApplication.h"
#include "text/SPString.h"
#include "text/SPUString.h"
#include "xml/SPXMLAttribute.h"
#include "xml/SPXMLGenerator.h"
#include "xml/SPXMLStatus.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix {

class SPXMLDevice : public SPXMLGenerator {
 public:
  SPXMLDevice(const SPString& name, std::uint32_t vendor, std::uint32_t subVendor,
              std::uint32_t deviceNumber, std::uint32_t subDevice, std::uint32_t busNumber,
              std::uint32_t slotNumber, std::uint32_t functionNumber);
  explicit SPXMLDevice(std::u16string_view text) { SPXMLDevice::parseXML(text); }

  void addApplication(SPXMLApplication application) {
    applications.push_back(std::move(application));
  }

  // -1 where the attribute holds no number.
  std::int32_t getVendorID() const;
  std::int32_t getDeviceID() const;
  std::int32_t getSubVendorID() const;
  std::int32_t getSubDeviceID() const;
  std::int32_t getBus() const;
  std::int32_t getDevice() const;
  std::int32_t getFunction() const;
  const SPUString& getDisplay() const { return display.getValue(); }
  const std::vector<SPXMLApplication>& getApplications() const { return applications; }

  SPUString generateXML() const override;
  void parseXML(std::u16string_view text) override;

 private:
  std::vector<SPXMLAttribute> writtenAttributes() const;

  SPXMLAttribute vendorID{u"vendorID"};  // the four identifiers: hexadecimal
  SPXMLAttribute deviceID{u"deviceID"};
  SPXMLAttribute subVendorID{u"subVendorID"};
  SPXMLAttribute subDeviceID{u"subDeviceID"};
  SPXMLAttribute componentID{u"componentID"};
  SPXMLAttribute display{u"display"};
  SPXMLAttribute enumerator{u"enum"};
  SPXMLAttribute bus{u"bus"};  // the place: decimal
  SPXMLAttribute device{u"device"};
  SPXMLAttribute function{u"function"};
  std::optional<SPXMLStatus> status;
  std::vector<SPXMLApplication> applications;
  std::vector<SPXMLValidation> validations;
};

}  // namespace tolvanix
