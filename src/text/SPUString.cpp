#include "text/SPUString.h"

#include <iterator>
#include <utility>

#include "text/Conversion.h"

namespace tolvanix {

namespace {

constexpr int kLeastDigits = 4;

// The number in that base, at least four digits, after a sign.
template <unsigned Base>
std::u16string formatNumber(std::uint32_t number, bool negative) {
  char16_t text[11];
  char16_t* const end = text + std::size(text);
  char16_t* first = end;
  for (; number > 0 || end - first < kLeastDigits; number /= Base) {
    *--first = u"0123456789ABCDEF"[number % Base];
  }
  if (negative) *--first = u'-';
  return {first, end};
}

std::u16string formatDecimal(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  return formatNumber<10>(number < 0 ? 0U - bits : bits, number < 0);
}

}  // namespace

SPUString::SPUString(const char16_t* text)
    : ComparableString(text != nullptr ? std::u16string(text) : std::u16string()) {}

SPUString::SPUString(std::u16string_view text) : ComparableString(std::u16string(text)) {}

SPUString::SPUString(std::u16string&& text) : ComparableString(std::move(text)) {}

SPUString::SPUString(const char* text) : ComparableString(widen(text != nullptr ? text : "")) {}

SPUString::SPUString(const std::string& text) : SPUString(text.c_str()) {}

SPUString::SPUString(std::uint32_t number) : ComparableString(formatNumber<16>(number, false)) {}

SPUString::SPUString(std::int32_t number, Decimal /*selector*/)
    : ComparableString(formatDecimal(number)) {}

SPUString& SPUString::operator=(std::u16string_view text) {
  assign(text);
  return *this;
}

SPUString& SPUString::operator=(const char16_t* text) {
  assign(text);
  return *this;
}

SPUString& SPUString::operator=(const std::string& text) {
  return *this = text.c_str();
}

SPUString& SPUString::operator=(const char* text) {
  assign(widen(text));
  return *this;
}

SPUString operator+(const char16_t* left, const SPUString& right) {
  return SPUString(left + static_cast<const std::u16string&>(right));
}

SPUString operator+(const SPUString& left, const SPUString& right) {
  return SPUString(static_cast<const std::u16string&>(left) +
                   static_cast<const std::u16string&>(right));
}

}  // namespace tolvanix
