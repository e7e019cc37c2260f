// Names of PCI devices from the pci.ids list (format: its own opening comment, by which it is
// sorted, too; the list is published at pci-ids.ucw.cz).
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "winapi/posix/base/FileBytes.h"

namespace tolvanix::winapi {

class PciIds {
 public:
  // An empty list knows no names. Where a list is not sorted, names may be missed.
  explicit PciIds(MappedFile mapped);

  // The list that this computer has installed; empty when it has none.
  static PciIds ofSystem();

  // The name of the subsystem, else of the device; empty when the list has neither.
  std::string_view name(std::uint16_t vendor, std::uint16_t device, std::uint16_t subVendor,
                        std::uint16_t subDevice);

 private:
  std::string_view section(std::uint16_t vendor);

  MappedFile file;
  // The lines of the vendors that were asked for, each with its devices; empty for none.
  std::unordered_map<std::uint16_t, std::string_view> sections;
};

}  // namespace tolvanix::winapi
