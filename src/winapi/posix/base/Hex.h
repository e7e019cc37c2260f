// Hexadecimal numbers of fixed formats.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "text/Ascii.h"

namespace tolvanix::winapi {

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

// Appends the lowest `width` upper-case digits of `number`, at most eight.
inline void appendHex(std::string& text, std::uint32_t number, std::size_t width) {
  char digits[8];
  for (std::size_t i = width; i > 0; number >>= 4) digits[--i] = "0123456789ABCDEF"[number & 0xF];
  text.append(digits, width);
}

}  // namespace tolvanix::winapi
