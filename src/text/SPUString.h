// Wide text: UTF-16 in 16-bit units on every platform, so that documents and the validation
// library's interface are the same bytes everywhere.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/ComparableString.h"

namespace tolvanix {

class SPUString : public ComparableString<SPUString, char16_t> {
 public:
  struct Decimal {};  // selects the decimal form of a number

  SPUString() = default;
  explicit SPUString(const char16_t* text);  // null counts as empty
  explicit SPUString(std::u16string_view text);
  explicit SPUString(std::u16string&& text);
  // Narrow text, converted byte for unit up to the first zero; null counts as empty.
  explicit SPUString(const char* text);
  explicit SPUString(const std::string& text);
  // At least four upper-case hexadecimal digits: 26 gives 001A.
  explicit SPUString(std::uint32_t number);
  // At least four decimal digits: 5 gives 0005.
  SPUString(std::int32_t number, Decimal selector);

  SPUString& operator=(std::u16string_view text);  // the mode stays, here and below
  SPUString& operator=(const char16_t* text);
  SPUString& operator=(const std::string& text);
  SPUString& operator=(const char* text);
};

SPUString operator+(const char16_t* left, const SPUString& right);
SPUString operator+(const SPUString& left, const SPUString& right);

}  // namespace tolvanix
