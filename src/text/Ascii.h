// ASCII letters and digits, narrow or wide, whatever the locale.
#pragma once

#include <algorithm>
#include <concepts>
#include <string>
#include <string_view>

namespace tolvanix {

template <std::integral Char>
constexpr Char toLower(Char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<Char>(c + ('a' - 'A')) : c;
}

template <std::integral Char>
constexpr Char toUpper(Char c) {
  return c >= 'a' && c <= 'z' ? static_cast<Char>(c - ('a' - 'A')) : c;
}

inline std::string toLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = toLower(c);
  return lower;
}

inline std::string toUpper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = toUpper(c);
  return upper;
}

constexpr bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return toLower(a) == toLower(b); });
}

template <std::integral Char>
constexpr bool isDecimalDigit(Char c) {
  return c >= '0' && c <= '9';
}

// The value of a hexadecimal digit of either case; negative for any other character.
template <std::integral Char>
constexpr int hexDigitValue(Char c) {
  if (isDecimalDigit(c)) return c - '0';
  const Char lower = toLower(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace tolvanix
