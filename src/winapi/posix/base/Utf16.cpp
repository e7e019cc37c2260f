#include "winapi/posix/base/Utf16.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "text/Utf8.h"

namespace tolvanix::winapi {
namespace {

constexpr std::size_t kBlock = 32;

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

// Appends a whole block if it is ASCII, as driver files in UTF-16 are but for a few strings. (40 MB
// of them: 60 ms; unit by unit, 150 ms.)
template <bool BigEndian>
bool appendAsciiBlock(const char* bytes, std::string& text) {
  const auto block = readUnits<BigEndian, kBlock>(bytes);
  char16_t all = 0;
  for (const char16_t unit : block) all |= unit;
  if (all >= 0x80) return false;
  std::array<char, kBlock> narrow;
  std::transform(block.begin(), block.end(), narrow.begin(),
                 [](char16_t unit) { return static_cast<char>(unit); });
  text.append(narrow.data(), narrow.size());
  return true;
}

template <bool BigEndian>
std::size_t append(std::string_view bytes, std::string& text) {
  const std::size_t units = bytes.size() / 2;
  std::size_t i = 0;
  while (i < units) {
    if (units - i >= kBlock && appendAsciiBlock<BigEndian>(bytes.data() + 2 * i, text)) {
      i += kBlock;
      continue;
    }
    const std::size_t end = std::min(units, i + kBlock);
    while (i < end) {
      const char16_t unit = unitAt<BigEndian>(bytes, i);
      const bool high = isHighSurrogate(unit);
      if (high && i + 1 == units) return 2 * i;
      const char16_t next = high ? unitAt<BigEndian>(bytes, i + 1) : u'\0';
      const bool pair = high && isLowSurrogate(next);
      const bool lone = (high && !pair) || isLowSurrogate(unit);
      appendUtf8(text, pair ? joinSurrogates(unit, next) : lone ? kReplacementCharacter : unit);
      i += pair ? 2 : 1;
    }
  }
  return 2 * i;
}

}  // namespace

std::size_t appendUtf16(std::string_view bytes, ByteOrder order, std::string& text) {
  return order == ByteOrder::kBigEndian ? append<true>(bytes, text) : append<false>(bytes, text);
}

std::string utf16ToUtf8(std::string_view bytes) {
  std::string text;
  const std::size_t taken = appendUtf16(bytes, ByteOrder::kLittleEndian, text);
  if (bytes.size() - taken >= sizeof(char16_t)) appendUtf8(text, kReplacementCharacter);
  return text;
}

}  // namespace tolvanix::winapi
