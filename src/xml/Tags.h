// Writing an element in place: its start tag, whatever its owner appends, its end tag.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "xml/SPXMLAttribute.h"

namespace tolvanix {

// Attributes without a value are left out.
void appendStartTag(std::u16string& out, std::u16string_view name,
                    const std::vector<const SPXMLAttribute*>& attributes);
void appendEndTag(std::u16string& out, std::u16string_view name);

}  // namespace tolvanix
