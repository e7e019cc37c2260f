// One attribute of an element class. An empty value means that the attribute is absent.
#pragma once

#include <cstdint>
#include <string_view>

#include "text/SPString.h"
#include "text/SPUString.h"

namespace tolvanix {

class SPXMLAttribute {
 public:
  explicit SPXMLAttribute(const char* attributeName);
  // The value in upper-case hexadecimal, at least four digits.
  SPXMLAttribute(const char* attributeName, std::uint32_t number);
  // The value is XML: entities in it are resolved.
  SPXMLAttribute(const char* attributeName, const SPString& text);

  // Takes XML: entities are resolved, so that the value is held as plain text.
  void setValue(const SPUString& text);
  // Takes the first non-empty value that this attribute has among the text's elements of that name,
  // else empty (SPXMLObject::getAttribute).
  void readFrom(std::u16string_view text, std::u16string_view element);
  const SPUString& getValue() const { return value; }

  // ` name="value" ` with the value escaped, a blank on both sides; empty when the attribute has no
  // name or no value.
  SPUString format() const;

 private:
  SPString name;
  SPUString value;
};

}  // namespace tolvanix
