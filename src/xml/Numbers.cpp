#include "xml/Numbers.h"

#include <algorithm>
#include <limits>

namespace tolvanix {

namespace {

bool isSpace(char16_t unit) {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

std::u16string_view withoutLeadingSpace(std::u16string_view text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  return text;
}

// The value of a digit, 16 for a unit that is none.
unsigned digitValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10U;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10U;
  return 16;
}

// The leading digits of that base as a number, at most `limit`; none without a digit.
std::optional<std::uint64_t> readDigits(std::u16string_view text, unsigned base,
                                        std::uint64_t limit) {
  if (text.empty() || digitValue(text[0]) >= base) return std::nullopt;
  std::uint64_t value = 0;
  for (const char16_t unit : text) {
    const unsigned digit = digitValue(unit);
    if (digit >= base) break;
    value = std::min(value * base + digit, limit);
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
      digitValue(digits[2]) < 16) {
    digits.remove_prefix(2);
  }
  constexpr std::uint64_t kTooLarge = std::uint64_t{1} << 32;
  const auto value = readDigits(digits, 16, kTooLarge);
  if (!value || *value == kTooLarge) return -1;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(*value));
}

}  // namespace tolvanix
