#include "inventory/DeviceTexts.h"

#include <cstddef>

namespace tolvanix {
namespace {

// The text up to the separator, which `rest` loses with it; all of it when there is none.
std::string_view takeToken(std::string_view& rest, char separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view token = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return token;
}

// The number behind the four characters of "VEN_" or "DEV_".
std::uint16_t numberBehindName(std::string_view field) {
  return field.size() > 4 ? ParseHexNumber(field.substr(4)) : std::uint16_t{0};
}

bool isDecimalDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

std::uint16_t ParseHexNumber(std::string_view text) {
  unsigned number = 0;
  for (const char c : text) {
    unsigned digit = 0;
    if (isDecimalDigit(c)) {
      digit = static_cast<unsigned>(c - '0');
    } else if (c >= 'A' && c <= 'F') {
      digit = static_cast<unsigned>(c - 'A') + 10;
    } else if (c >= 'a' && c <= 'f') {
      digit = static_cast<unsigned>(c - 'a') + 10;
    } else {
      break;
    }
    number = number * 16 + digit;
  }
  return static_cast<std::uint16_t>(number);
}

void ParseHardwareId(DeviceRecord& record) {
  std::string_view rest = record.hardwareID;
  takeToken(rest, '\\');  // the bus
  std::string_view identifiers = takeToken(rest, '\\');
  record.vendorID = numberBehindName(takeToken(identifiers, '&'));
  record.deviceID = numberBehindName(takeToken(identifiers, '&'));
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
