// The OperatingSystem element of a document.
#pragma once

#include "inventory/SPOSInfo.h"
#include "xml/SPXMLAttribute.h"
#include "xml/SPXMLGenerator.h"

namespace tolvanix {

class SPXMLOSInfo : public SPOSInfo, public SPXMLGenerator {
 public:
  // Measures the system; may throw as SPOSInfo does.
  SPXMLOSInfo() = default;

  // Describes the computer at this moment, whatever was read before; may throw likewise.
  SPUString generateXML() const override;
  void parseXML(std::u16string_view text) override;

 private:
  SPXMLAttribute display{u"display"};  // read from documents, not written
};

}  // namespace tolvanix
