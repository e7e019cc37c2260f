// One attribute of an element class. An empty value means that the attribute is absent.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "text/SPString.h"
#include "text/SPUString.h"

namespace tolvanix {

class SPXMLAttribute {
 public:
  // The name is a literal: its address is kept.
  explicit SPXMLAttribute(const char16_t* attributeName);
  // The value in upper-case hexadecimal, at least four digits.
  SPXMLAttribute(const char16_t* attributeName, std::uint32_t number);
  // The value is XML: entities in it are resolved.
  SPXMLAttribute(const char16_t* attributeName, const SPString& text);

  // Takes XML: entities are resolved, so that the value is held as plain text.
  void setValue(std::u16string_view text);
  const SPUString& getValue() const { return value; }
  std::u16string_view getName() const { return name; }

  // ` name="value" ` with the value escaped, a blank on both sides; empty when the attribute has no
  // name or no value.
  SPUString format() const;
  // Appends what `format` returns.
  void appendTo(std::u16string& out) const;

 private:
  const char16_t* name;
  SPUString value;
};

}  // namespace tolvanix
