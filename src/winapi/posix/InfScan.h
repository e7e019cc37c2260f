// Finds the characters that divide a line of an INF file, many bytes at a time.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstddef>

namespace tolvanix {

// As many bytes are looked at together, so a text must have that many readable bytes behind it.
constexpr std::size_t kInfScanWidth = 16;

// Bit i is set when byte i is a line feed, a comma, an equals sign, a quote or a semicolon.
inline unsigned infDividerBits(const char* bytes) {
#ifdef __SSE2__
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const auto equals = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
  const __m128i lists = _mm_or_si128(equals(','), equals('='));
  const __m128i texts = _mm_or_si128(equals('"'), equals(';'));
  const __m128i any = _mm_or_si128(_mm_or_si128(lists, texts), equals('\n'));
  return static_cast<unsigned>(_mm_movemask_epi8(any));
#else
  unsigned bits = 0;
  for (std::size_t i = 0; i < kInfScanWidth; ++i) {
    const char c = bytes[i];
    const bool divider = c == ',' || c == '=' || c == '"' || c == ';' || c == '\n';
    bits |= static_cast<unsigned>(divider) << i;
  }
  return bits;
#endif
}

}  // namespace tolvanix
