#include "text/SPUString.h"

#include <cstdio>
#include <utility>

#include "text/Conversion.h"

namespace tolvanix {

namespace {

// The longest result: a sign and ten digits.
constexpr std::size_t kNumberBuffer = 16;

std::u16string formatHexadecimal(std::uint32_t number) {
  char digits[kNumberBuffer];
  std::snprintf(digits, sizeof digits, "%.4X", number);
  return widen(digits);
}

std::u16string formatDecimal(std::int32_t number) {
  char digits[kNumberBuffer];
  std::snprintf(digits, sizeof digits, "%.4d", number);
  return widen(digits);
}

}  // namespace

SPUString::SPUString(const char16_t* text)
    : ComparableString(text != nullptr ? std::u16string(text) : std::u16string()) {}

SPUString::SPUString(std::u16string text) : ComparableString(std::move(text)) {}

SPUString::SPUString(const char* text) : ComparableString(widen(text != nullptr ? text : "")) {}

SPUString::SPUString(const std::string& text) : SPUString(text.c_str()) {}

SPUString::SPUString(std::uint32_t number) : ComparableString(formatHexadecimal(number)) {}

SPUString::SPUString(std::int32_t number, Decimal /*selector*/)
    : ComparableString(formatDecimal(number)) {}

SPUString& SPUString::operator=(const std::u16string& text) {
  assign(text);
  return *this;
}

SPUString& SPUString::operator=(const char16_t* text) {
  assign(text);
  return *this;
}

SPUString& SPUString::operator=(const std::string& text) { return *this = text.c_str(); }

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
