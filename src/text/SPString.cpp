#include "text/SPString.h"

#include <algorithm>
#include <utility>

#include "text/Conversion.h"

namespace tolvanix {

SPString::SPString(const char* text) : ComparableString(text != nullptr ? text : "") {}

SPString::SPString(std::string text) : ComparableString(std::move(text)) {}

SPString::SPString(const char16_t* text)
    : ComparableString(text != nullptr ? narrow(text) : std::string()) {}

SPString& SPString::operator=(const std::string& text) {
  assign(text);
  return *this;
}

SPString& SPString::operator=(const char* text) {
  assign(text);
  return *this;
}

char16_t* SPString::toWide(char16_t* buffer, std::size_t capacity) const {
  if (buffer == nullptr || size() >= capacity) return nullptr;
  const std::u16string wide = widen(*this);
  *std::copy(wide.begin(), wide.end(), buffer) = u'\0';
  return buffer;
}

SPString operator+(const SPString& left, const SPString& right) {
  return SPString(static_cast<const std::string&>(left) + static_cast<const std::string&>(right));
}

SPString operator+(const SPString& left, const char* right) {
  std::string joined(left.c_str(), left.size());
  joined += right;
  return SPString(std::move(joined));
}

SPVersionString::SPVersionString(const SPString& text) : SPString(text.trim()) {}

}  // namespace tolvanix
