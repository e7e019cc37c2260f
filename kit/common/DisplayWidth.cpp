#include "common/DisplayWidth.h"

#include <algorithm>
#include <iterator>

namespace tolvanix::kit {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Unicode's blocks rather than its single characters: near enough for aligning names.
constexpr Range kCombining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x064B, 0x065F},
    {0x200B, 0x200F}, {0x20D0, 0x20F0}, {0x302A, 0x302D}, {0x3099, 0x309A},
    {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
};
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

template <typename Ranges>
bool contain(const Ranges& ranges, char32_t character) {
  return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

std::size_t widthOf(char32_t character) {
  constexpr char32_t kFirstCombining = kCombining[0].first;
  if (character < kFirstCombining) return 1;
  if (contain(kCombining, character)) return 0;
  return contain(kWide, character) ? 2 : 1;
}

struct Character {
  char32_t value;
  std::size_t size;  // in bytes
};

// Of a text that is not empty.
Character firstOf(std::string_view text) {
  const auto byte = [text](std::size_t at) {
    return static_cast<char32_t>(static_cast<unsigned char>(text[at]));
  };
  const char32_t lead = byte(0);
  std::size_t size = 1;
  if (lead >= 0xF0) {
    size = 4;
  } else if (lead >= 0xE0) {
    size = 3;
  } else if (lead >= 0xC0) {
    size = 2;
  }
  size = std::min(size, text.size());
  char32_t value = size == 1 ? lead : lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) value = value << 6 | (byte(i) & 0x3FU);
  return {value, size};
}

bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

}  // namespace

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstOf(text);
    width += widthOf(character.value);
    text.remove_prefix(character.size);
  }
  return width;
}

std::string printable(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const Character character = firstOf(text);
    if (isControl(character.value)) {
      out += ' ';
    } else {
      out += text.substr(0, character.size);
    }
    text.remove_prefix(character.size);
  }
  return out;
}

std::string shortened(std::string_view text, std::size_t width) {
  constexpr std::string_view kEllipsis = "\u2026";
  if (displayWidth(text) <= width) return printable(text);
  std::size_t room = width > 0 ? width - 1 : 0;
  std::size_t kept = 0;
  while (kept < text.size()) {
    const Character character = firstOf(text.substr(kept));
    const std::size_t needed = widthOf(character.value);
    if (needed > room) break;
    room -= needed;
    kept += character.size;
  }
  return printable(text.substr(0, kept)).append(kEllipsis);
}

}  // namespace tolvanix::kit
