// A whole document: the computer, its operating system, its devices, findings and a status.
#pragma once

#include <cstdint>
#include <list>
#include <utility>
#include <vector>

#include "inventory/SPXMLDevice.h"
#include "inventory/SPXMLOSInfo.h"
#include "text/SPString.h"
#include "text/SPUString.h"
#include "xml/SPXMLAttribute.h"
#include "xml/SPXMLGenerator.h"
#include "xml/SPXMLStatus.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix {

class SPXMLData : public SPXMLGenerator {
 public:
  // Measure the operating system: may throw SPException (SPOSInfo). A system ID that is not
  // positive as a signed number, such as 0xFFFFFFFF, gives a document without a System element.
  SPXMLData(const SPString& root, const SPString& language, std::uint32_t system);
  explicit SPXMLData(std::u16string_view text) { SPXMLData::parseXML(text); }
  SPXMLData(const SPXMLData&) = delete;
  SPXMLData& operator=(const SPXMLData&) = delete;
  ~SPXMLData() override = default;

  void addDevice(SPXMLDevice device) { devices.push_back(std::move(device)); }
  const std::list<SPXMLDevice>& getDevices() const { return devices; }

  // May throw, too: the operating system is measured again.
  SPUString generateXML() const override;
  void parseXML(std::u16string_view text) override;

 private:
  SPUString systemElement() const;  // empty when there is no system ID

  SPUString rootName;
  SPXMLAttribute lang{u"lang"};
  SPUString systemID;  // hexadecimal
  SPUString systemModel;
  SPXMLStatus status;
  SPXMLOSInfo osInfo;
  std::list<SPXMLDevice> devices;
  std::vector<SPXMLValidation> validations;  // of a document without devices
};

}  // namespace tolvanix
