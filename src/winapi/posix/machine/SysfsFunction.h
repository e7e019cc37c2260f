// What a sysfs tree says of one PCI function (kernel.org/doc/Documentation/ABI/testing/
// sysfs-bus-pci).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "winapi/posix/machine/SysfsFolder.h"

namespace tolvanix::winapi {

struct PciAddress {
  std::uint32_t domain = 0;
  std::uint8_t bus = 0;
  std::uint8_t device = 0;
  std::uint8_t function = 0;
  auto operator<=>(const PciAddress&) const = default;  // NOLINT(modernize-use-nullptr): no null
};

// "0000:00:1f.3"; only names as the kernel writes them are addresses.
std::optional<PciAddress> parsePciAddress(std::string_view name);

// Each number is none where the tree does not give it.
struct SysfsFunction {
  std::optional<std::uint32_t> vendor;
  std::optional<std::uint32_t> device;
  std::optional<std::uint32_t> subVendor;
  std::optional<std::uint32_t> subDevice;
  std::optional<std::uint32_t> classCode;  // base class, subclass, interface, 8 bits each
  std::optional<std::uint32_t> revision;
  std::string driver;  // empty for none
};

// Reads the function whose folder that is.
SysfsFunction readSysfsFunction(SysfsFolder& folder);

}  // namespace tolvanix::winapi
