// Narrow text: bytes in the system's ANSI code page (UTF-8 under the program's manifest).
#pragma once

#include <string>

#include "text/ComparableString.h"

namespace tolvanix {

class SPString : public ComparableString<SPString, char> {
 public:
  SPString() = default;
  explicit SPString(const char* text);  // null counts as empty
  explicit SPString(std::string text);
  // Converted unit for byte up to the first zero; null counts as empty.
  explicit SPString(const char16_t* text);

  SPString& operator=(const std::string& text);  // the mode stays
  SPString& operator=(const char* text);

  // Writes the wide form, zero-terminated, into `buffer` of `capacity` units and returns it; null,
  // writing nothing, when the buffer is null or the text's length is not below the capacity.
  char16_t* toWide(char16_t* buffer, std::size_t capacity) const;
};

SPString operator+(const SPString& left, const SPString& right);
SPString operator+(const SPString& left, const char* right);

// A version number as text, such as "6.1", without blanks around it.
class SPVersionString : public SPString {
 public:
  explicit SPVersionString(const SPString& text);
};

}  // namespace tolvanix
