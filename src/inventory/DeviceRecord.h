// One PCI device that is present in the computer, as the enumeration lists it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvanix {

constexpr std::size_t kDeviceTextSize = 200;

// Texts are in the ANSI code page, cut at 199 characters and ended by a zero. What could not be
// found out is empty or 0.
struct DeviceRecord {
  char name[kDeviceTextSize];
  std::uint16_t deviceID;
  std::uint16_t vendorID;
  std::uint16_t subDeviceID;
  std::uint16_t subVendorID;
  char driverVersion[kDeviceTextSize];
  char firmwareVersion[kDeviceTextSize];  // never filled: a PCI device does not report it
  char hardwareID[kDeviceTextSize];       // the most specific of the device's hardware IDs
  std::uint16_t bus;
  std::uint16_t device;
  std::uint16_t function;
  DeviceRecord* next;  // null at the end of the list
};

}  // namespace tolvanix
