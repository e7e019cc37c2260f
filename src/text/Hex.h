// Hexadecimal numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "text/Ascii.h"

namespace tolvanix {

// The whole text as a number of one to eight digits of either case; none for any other text.
constexpr std::optional<std::uint32_t> readHex(std::string_view digits) {
  if (digits.empty() || digits.size() > 8) return std::nullopt;
  std::uint32_t number = 0;
  for (const char c : digits) {
    const int digit = hexDigitValue(c);
    if (digit < 0) return std::nullopt;
    number = number * 16 + static_cast<std::uint32_t>(digit);
  }
  return number;
}

// Appends the number in upper case, with zeros before it when it has less than `width` digits.
inline void appendHex(std::string& text, std::uint32_t number, std::size_t width) {
  while (width < 8 && number >> (4 * width) != 0) ++width;
  for (; width > 0; --width) text += "0123456789ABCDEF"[number >> (4 * (width - 1)) & 0xF];
}

}  // namespace tolvanix
