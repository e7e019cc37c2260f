// Characters in UTF-8 and UTF-16 (RFC 3629, RFC 2781).
#pragma once

#include <string>

namespace tolvanix {

// In place of what is no character.
constexpr char32_t kReplacementCharacter = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr char32_t joinSurrogates(char16_t high, char16_t low) {
  return 0x10000 + ((high - char32_t{0xD800}) << 10) + (low - char32_t{0xDC00});
}

// Appends a character from 80 to 10FFFF that is no surrogate.
void appendLongUtf8(std::string& text, char32_t character);

// Appends a character up to 10FFFF that is no surrogate.
inline void appendUtf8(std::string& text, char32_t character) {
  if (character < 0x80) {
    text.push_back(static_cast<char>(character));
  } else {
    appendLongUtf8(text, character);
  }
}

}  // namespace tolvanix
