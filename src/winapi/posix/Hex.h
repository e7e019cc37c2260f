// Hexadecimal numbers of fixed formats.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvanix::winapi {

// The value of a digit of either case, -1 for any other character.
int hexDigit(char c);

// The whole text as a number of one to eight digits of either case; none for any other text.
std::optional<std::uint32_t> readHex(std::string_view digits);

// Appends `number` with upper-case digits, at least `width` of them.
void appendHex(std::string& text, std::uint32_t number, int width);

}  // namespace tolvanix::winapi
