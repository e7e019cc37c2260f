// Names of PCI devices from the pci.ids list (format: its own opening comment; the list is
// published at pci-ids.ucw.cz).
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "winapi/posix/FileBytes.h"

namespace tolvanix::winapi {

class PciIds {
 public:
  // An empty list knows no names.
  explicit PciIds(MappedFile mapped);

  // The list that this computer has installed; empty when it has none.
  static PciIds ofSystem();

  // The name of the subsystem, else of the device; empty when the list has neither.
  std::string_view name(std::uint16_t vendor, std::uint16_t device, std::uint16_t subVendor,
                        std::uint16_t subDevice) const;

 private:
  struct Entry {
    std::uint32_t ids;     // vendor, then device, 16 bits each
    std::uint32_t offset;  // of the device's line
  };
  MappedFile file;
  std::vector<Entry> devices;  // sorted by ids
};

}  // namespace tolvanix::winapi
