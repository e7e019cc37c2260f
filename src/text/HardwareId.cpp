#include "text/HardwareId.h"

#include "text/Hex.h"

namespace tolvanix {

std::string pciModelId(std::uint32_t vendor, std::uint32_t device) {
  std::string id = "PCI\\VEN_";
  appendHex(id, vendor, 4);
  id += "&DEV_";
  appendHex(id, device, 4);
  return id;
}

std::string pciHardwareId(const PciIdentifiers& identifiers) {
  std::string id = pciModelId(identifiers.vendor, identifiers.device);
  id += "&SUBSYS_";
  appendHex(id, identifiers.subDevice, 4);
  appendHex(id, identifiers.subVendor, 4);
  return id;
}

}  // namespace tolvanix
