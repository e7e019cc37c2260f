// The numbers in the texts by which Windows describes a PCI device. Formats:
// learn.microsoft.com/windows-hardware/drivers/install/identifiers-for-pci-devices.
#pragma once

#include <cstdint>
#include <string_view>

#include "inventory/DeviceRecord.h"

namespace tolvanix {

// The hexadecimal digits at the start of `text`, of either case; 0 when there are none. Of more
// than four digits the last four count.
std::uint16_t ParseHexNumber(std::string_view text);

// Fills the four identifiers from the record's hardwareID, such as
// PCI\VEN_1DE4&DEV_1E03&SUBSYS_0534ABCD&REV_04, in which the subsystem's device comes before its
// vendor. The fields are told by their places, not by their names.
void ParseHardwareId(DeviceRecord& record);

// Fills bus, device and function with the first three numbers of a location text, such as
// "PCI bus 0, device 31, function 3"; a number that is missing gives 0.
void ParseLocation(std::string_view location, DeviceRecord& record);

}  // namespace tolvanix
