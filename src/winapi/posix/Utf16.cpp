#include "winapi/posix/Utf16.h"

#include <cstddef>
#include <cstdint>

namespace tolvanix::winapi {
namespace {

void appendUtf8(std::string& text, std::uint32_t character) {
  const auto trail = [character](int shift) {
    return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += trail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | (character >> 12));
    text += trail(6);
    text += trail(0);
  } else {
    text += static_cast<char>(0xF0 | (character >> 18));
    text += trail(12);
    text += trail(6);
    text += trail(0);
  }
}

}  // namespace

std::string utf16ToUtf8(std::string_view bytes) {
  const std::size_t units = bytes.size() / 2;
  const auto unit = [bytes](std::size_t index) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[2 * index]) |
                                      static_cast<unsigned char>(bytes[2 * index + 1]) << 8);
  };
  std::string text;
  text.reserve(units);
  for (std::size_t i = 0; i < units; ++i) {
    std::uint32_t character = unit(i);
    if (character >= 0xD800 && character < 0xE000) {
      const std::uint32_t low = i + 1 < units ? unit(i + 1) : 0;
      if (character < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
        character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
        ++i;
      } else {
        character = 0xFFFD;
      }
    }
    appendUtf8(text, character);
  }
  return text;
}

}  // namespace tolvanix::winapi
