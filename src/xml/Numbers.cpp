#include "xml/Numbers.h"

#include <algorithm>
#include <limits>

#include "text/Ascii.h"

namespace tolvanix {

namespace {

bool isSpace(char16_t unit) {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

std::u16string_view withoutLeadingSpace(std::u16string_view text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  return text;
}

// The leading digits of that base as a number, at most `limit`; none without a digit.
std::optional<std::uint64_t> readDigits(std::u16string_view text, unsigned base,
                                        std::uint64_t limit) {
  const auto isDigit = [base](char16_t unit) {
    return base == 16 ? hexDigitValue(unit) >= 0 : isDecimalDigit(unit);
  };
  if (text.empty() || !isDigit(text[0])) return std::nullopt;
  std::uint64_t value = 0;
  for (const char16_t unit : text) {
    if (!isDigit(unit)) break;
    value = std::min(value * base + static_cast<unsigned>(hexDigitValue(unit)), limit);
  }
  return value;
}

}  // namespace

std::optional<std::int32_t> readDecimal(std::u16string_view text) {
  std::u16string_view digits = withoutLeadingSpace(text);
  const bool negative = digits.starts_with(u'-');
  if (negative || digits.starts_with(u'+')) digits.remove_prefix(1);
  constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
  const std::int64_t limit = negative ? kMax + 1 : kMax;
  const auto value = readDigits(digits, 10, static_cast<std::uint64_t>(limit));
  if (!value) return std::nullopt;
  const auto magnitude = static_cast<std::int64_t>(*value);
  return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

std::int32_t readHexadecimal(std::u16string_view text) {
  std::u16string_view digits = withoutLeadingSpace(text);
  if (digits.size() > 2 && (digits.starts_with(u"0x") || digits.starts_with(u"0X")) &&
      hexDigitValue(digits[2]) >= 0) {
    digits.remove_prefix(2);
  }
  constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 32;
  const auto value = readDigits(digits, 16, kTooLarge);
  if (!value || *value == kTooLarge) return -1;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(*value));
}

}  // namespace tolvanix
