#include "winapi/posix/base/Utf16.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace tolvanix::winapi {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::size_t kBlock = 32;
constexpr std::size_t kLongestUtf8 = 4;

// The units of the bytes, in the order of this computer's own.
template <bool BigEndian, std::size_t Count>
std::array<char16_t, Count> readUnits(const char* bytes) {
  std::array<char16_t, Count> units;
  std::memcpy(units.data(), bytes, sizeof units);
  if constexpr (BigEndian == (std::endian::native == std::endian::little)) {
    for (char16_t& unit : units) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  }
  return units;
}

template <bool BigEndian>
char16_t unitAt(std::string_view bytes, std::size_t index) {
  return readUnits<BigEndian, 1>(bytes.data() + 2 * index)[0];
}

bool isHighSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}

char* putUtf8(char* out, char32_t c) {
  const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
  return out;
}

// Driver files in UTF-16 are ASCII but for a few strings, so whole blocks of that are narrowed at
// once.
template <bool BigEndian>
std::size_t append(std::string_view bytes, std::string& text, std::size_t& length) {
  const std::size_t units = bytes.size() / 2;
  std::size_t i = 0;
  while (i < units) {
    if (text.size() - length < kBlock * kLongestUtf8) {
      text.resize(text.size() + text.size() / 2 + kBlock * kLongestUtf8);
    }
    char* out = text.data() + length;
    const std::size_t count = std::min(kBlock, units - i);
    if (count == kBlock) {
      const auto block = readUnits<BigEndian, kBlock>(bytes.data() + 2 * i);
      char16_t all = 0;
      for (const char16_t unit : block) all |= unit;
      if (all < 0x80) {
        std::transform(block.begin(), block.end(), out,
                       [](char16_t unit) { return static_cast<char>(unit); });
        i += kBlock;
        length += kBlock;
        continue;
      }
    }
    for (const std::size_t end = i + count; i < end; ++i) {
      char32_t c = unitAt<BigEndian>(bytes, i);
      if (isHighSurrogate(c)) {
        if (i + 1 == units) break;
        const char32_t low = unitAt<BigEndian>(bytes, i + 1);
        const bool pair = low >= 0xDC00 && low <= 0xDFFF;
        c = pair ? 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00) : kReplacement;
        if (pair) ++i;
      } else if (c >= 0xDC00 && c <= 0xDFFF) {
        c = kReplacement;
      }
      out = putUtf8(out, c);
    }
    length = static_cast<std::size_t>(out - text.data());
    if (i + 1 == units && isHighSurrogate(unitAt<BigEndian>(bytes, i))) break;
  }
  return 2 * i;
}

}  // namespace

std::size_t appendUtf8(std::string_view bytes, ByteOrder order, std::string& text,
                       std::size_t& length) {
  return order == ByteOrder::kBigEndian ? append<true>(bytes, text, length)
                                        : append<false>(bytes, text, length);
}

std::string utf16ToUtf8(std::string_view bytes) {
  std::string text;
  std::size_t length = 0;
  const std::size_t taken = appendUtf8(bytes, ByteOrder::kLittleEndian, text, length);
  text.resize(length);
  if (bytes.size() - taken >= sizeof(char16_t)) text += "\xEF\xBF\xBD";
  return text;
}

}  // namespace tolvanix::winapi
