#include "text/Utf8.h"

namespace tolvanix {

void appendLongUtf8(std::string& text, char32_t character) {
  const auto lead = [&](char32_t mark, int shift) {
    text += static_cast<char>(mark | (character >> shift));
  };
  const auto tail = [&](int shift) {
    text += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x800) {
    lead(0xC0, 6);
    tail(0);
  } else if (character < 0x10000) {
    lead(0xE0, 12);
    tail(6);
    tail(0);
  } else {
    lead(0xF0, 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace tolvanix
