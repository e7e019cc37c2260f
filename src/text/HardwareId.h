// The identifiers by which Windows knows a PCI device
// (learn.microsoft.com/windows-hardware/drivers/install/identifiers-for-pci-devices).
#pragma once

#include <cstdint>
#include <string>

namespace tolvanix {

struct PciIdentifiers {
  std::uint32_t vendor;
  std::uint32_t device;
  std::uint32_t subDevice;
  std::uint32_t subVendor;
};

// PCI\VEN_vvvv&DEV_dddd. A number above FFFF is written with all its digits.
std::string pciModelId(std::uint32_t vendor, std::uint32_t device);

// The same with &SUBSYS_ssssnnnn, the subsystem's device before its vendor.
std::string pciHardwareId(const PciIdentifiers& identifiers);

}  // namespace tolvanix
