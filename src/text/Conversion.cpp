#include "text/Conversion.h"

#include <algorithm>
#include <cstddef>

#include "text/Utf8.h"

namespace tolvanix {

namespace {

bool isXmlCharacter(char32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c <= 0xD7FF || (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

struct Character {
  char32_t value;
  std::size_t units;  // how many units of the text it takes
};

// The character that units 0x80 to 0xFF at the start of `text` are as UTF-8 bytes; units 0 when
// they are none. Overlong forms and surrogates are no UTF-8 (RFC 3629).
Character utf8Sequence(std::u16string_view text) {
  const char16_t lead = text[0];
  const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
  if (length == 0 || text.size() < length) return {0, 0};
  char32_t value = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (text[i] < 0x80 || text[i] > 0xBF) return {0, 0};
    value = (value << 6) | (text[i] & 0x3FU);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kSmallest[length] || value > 0x10FFFF || isHighSurrogate(value) ||
      isLowSurrogate(value)) {
    return {0, 0};
  }
  return {value, length};
}

Character characterAt(std::u16string_view text) {
  const char16_t unit = text[0];
  if (unit >= 0x80 && unit <= 0xFF) {
    const Character sequence = utf8Sequence(text);
    if (sequence.units != 0) return sequence;
  }
  if (isHighSurrogate(unit) && text.size() > 1 && isLowSurrogate(text[1])) {
    return {joinSurrogates(unit, text[1]), 2};
  }
  return {unit, 1};
}

}  // namespace

std::u16string widen(std::string_view text) {
  std::u16string wide(text.size(), u'\0');
  std::transform(text.begin(), text.end(), wide.begin(),
                 [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
  return wide;
}

std::string narrow(std::u16string_view text) {
  std::string bytes(text.size(), '\0');
  std::transform(text.begin(), text.end(), bytes.begin(),
                 [](char16_t unit) { return unit <= 0xFF ? static_cast<char>(unit) : '?'; });
  return bytes;
}

std::string toXmlUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Character character = characterAt(text);
    appendUtf8(out, isXmlCharacter(character.value) ? character.value : kReplacementCharacter);
    text.remove_prefix(character.units);
  }
  return out;
}

}  // namespace tolvanix
