#include "winapi/posix/inf/InfDividers.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstdint>

namespace tolvanix::winapi {

namespace {

// Bit i is set when byte i is a divider; of 16 bytes.
std::uint64_t dividerBits(const char* bytes) {
#ifdef __SSE2__
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const auto equals = [block](char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); };
  const __m128i lists = _mm_or_si128(equals(','), equals('='));
  const __m128i texts = _mm_or_si128(equals('"'), equals(';'));
  const __m128i any = _mm_or_si128(_mm_or_si128(lists, texts), equals('\n'));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(any));
#else
  std::uint64_t bits = 0;
  for (unsigned i = 0; i < 16; ++i) {
    const char c = bytes[i];
    const bool divider = c == ',' || c == '=' || c == '"' || c == ';' || c == '\n';
    bits |= std::uint64_t{divider} << i;
  }
  return bits;
#endif
}

}  // namespace

void InfDividers::scan() {
  std::uint64_t bits = dividerBits(scanned) | dividerBits(scanned + 16) << 16 |
                       dividerBits(scanned + 32) << 32 | dividerBits(scanned + 48) << 48;
  next = 0;
  count = 0;
  for (; bits != 0; bits &= bits - 1) places[count++] = scanned + std::countr_zero(bits);
  scanned += kBlock;
}

}  // namespace tolvanix::winapi
