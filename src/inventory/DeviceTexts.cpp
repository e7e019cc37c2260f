#include "inventory/DeviceTexts.h"

#include <cstddef>

#include "text/Ascii.h"

namespace tolvanix {
namespace {

// The text up to the separator, which `rest` loses with it; all of it when there is none.
std::string_view takeToken(std::string_view& rest, char separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view token = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return token;
}

// The number after the four characters of "VEN_" or "DEV_".
std::uint16_t numberAfterName(std::string_view field) {
  return field.size() > 4 ? ParseHexNumber(field.substr(4)) : std::uint16_t{0};
}

}  // namespace

std::uint16_t ParseHexNumber(std::string_view text) {
  unsigned number = 0;
  for (const char c : text) {
    const int digit = hexDigitValue(c);
    if (digit < 0) break;
    number = number * 16 + static_cast<unsigned>(digit);
  }
  return static_cast<std::uint16_t>(number);
}

void ParseHardwareId(DeviceRecord& record) {
  std::string_view rest = record.hardwareID;
  takeToken(rest, '\\');  // the bus
  std::string_view identifiers = takeToken(rest, '\\');
  record.vendorID = numberAfterName(takeToken(identifiers, '&'));
  record.deviceID = numberAfterName(takeToken(identifiers, '&'));
  std::string_view subsystem = takeToken(identifiers, '&');
  takeToken(subsystem, '_');
  const std::string_view value = takeToken(subsystem, '_');
  const bool hasVendor = value.size() > 4;
  record.subDeviceID = hasVendor ? ParseHexNumber(value.substr(0, 4)) : std::uint16_t{0};
  record.subVendorID = hasVendor ? ParseHexNumber(value.substr(4)) : std::uint16_t{0};
}

void ParseLocation(std::string_view location, DeviceRecord& record) {
  unsigned numbers[3] = {};
  std::size_t at = 0;
  for (unsigned& number : numbers) {
    while (at < location.size() && !isDecimalDigit(location[at])) ++at;
    for (; at < location.size() && isDecimalDigit(location[at]); ++at) {
      number = number * 10 + static_cast<unsigned>(location[at] - '0');
    }
  }
  record.bus = static_cast<std::uint16_t>(numbers[0]);
  record.device = static_cast<std::uint16_t>(numbers[1]);
  record.function = static_cast<std::uint16_t>(numbers[2]);
}

}  // namespace tolvanix
