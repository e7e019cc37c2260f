#include "text/HardwareId.h"

#include "text/Format.h"

namespace tolvanix {

std::string pciHardwareId(const PciIdentifiers& identifiers) {
  return formatText("PCI\\VEN_%04X&DEV_%04X&SUBSYS_%04X%04X", identifiers.vendor,
                    identifiers.device, identifiers.subDevice, identifiers.subVendor);
}

}  // namespace tolvanix
