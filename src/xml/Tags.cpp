#include "xml/Tags.h"

namespace tolvanix {

void appendStartTag(std::u16string& out, std::u16string_view name,
                    const std::vector<const SPXMLAttribute*>& attributes) {
  out += u'<';
  out += name;
  for (const SPXMLAttribute* attribute : attributes) attribute->appendTo(out);
  out += u'>';
}

void appendEndTag(std::u16string& out, std::u16string_view name) {
  out += u"</";
  out += name;
  out += u'>';
}

}  // namespace tolvanix
