// The little XML that a validation library reads and writes: elements and their attributes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tolvanix::sample {

struct XmlElement {
  std::u16string name;
  std::vector<std::pair<std::u16string, std::u16string>> attributes;  // entities resolved
  std::vector<XmlElement> children;

  // The first child of that name; null when there is none.
  const XmlElement* child(std::u16string_view wanted) const;
  // Empty when the element lacks it.
  std::u16string_view attribute(std::u16string_view wanted) const;
};

// The root element of a document; none when its tags do not nest, an attribute has no quotes, or
// elements are nested more than 64 deep. Text, comments and declarations are passed over; of the
// entities the five of XML itself are known, others stay as they are.
std::optional<XmlElement> parseXml(std::u16string_view text);

// Appends plain text as character data, good for values in double quotes too. Units that no XML
// document may hold (https://www.w3.org/TR/xml/#charsets) become U+FFFD.
void appendEscaped(std::u16string& out, std::u16string_view text);

// Appends ` name="value"`.
void appendAttribute(std::u16string& out, std::u16string_view name, std::u16string_view value);

}  // namespace tolvanix::sample
