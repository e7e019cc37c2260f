// Names of PCI devices from the pci.ids list (format: its own opening comment; the list is
// published at pci-ids.ucw.cz).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "winapi/posix/base/FileBytes.h"

namespace tolvanix::winapi {

struct PciModel {
  std::uint16_t vendor = 0;
  std::uint16_t device = 0;
  std::uint32_t classCode = 0;  // base class, subclass and programming interface, 8 bits each
};

// The names of the models, in their order: the device's own, else that of its subclass, else that
// of its base class; empty where the list has none of them. Subsystems have the name of a board or
// of a whole computer, so they do not count. The names are parts of `list`, which need not be
// sorted.
std::vector<std::string_view> pciNames(std::string_view list, std::span<const PciModel> models);

// The list that this computer has installed; empty when it has none.
MappedFile installedPciIds();

}  // namespace tolvanix::winapi
