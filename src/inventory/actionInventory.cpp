// The command -i: prints the inventory of the computer.
#include <string>

#include "app/KivWrapper.h"
#include "app/Status.h"
#include "text/Conversion.h"

namespace tolvanix {

int KivWrapper::actionInventory() {
  TRACE_STEP("actionInventory: Entered function.\n");
  int status = GetInventory("en");
  TRACE_STEP("actionInventory: status from GetInventory() = %d\n", status);
  if (status == kSuccess) {
    std::string document = toXmlUtf8(inventoryXML);
    if (XMLWriter::removeOSElementFromXMLString(document) != XMLWriter::kEndTagMissing) {
      debugWriter->dumpXML(document.c_str(), "Inventory");
      xmlWriter->writeText(document.c_str());
      return kSuccess;
    }
    status = kOperatingSystemNotStripped;
  }
  writeInventoryFailure(status);
  return status;
}

}  // namespace tolvanix
