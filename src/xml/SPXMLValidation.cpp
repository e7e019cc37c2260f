#include "xml/SPXMLValidation.h"

#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {
constexpr std::u16string_view kElementName = u"Validation";
}

SPUString SPXMLValidation::generateXML() const {
  return buildResult(SPUString(kElementName), {type, result});
}

void SPXMLValidation::parseXML(std::u16string_view text) {
  const xmlquery::AttributeReader attributes(text, kElementName);
  attributes.read(type);
  attributes.read(result);
  readMessages(text);
}

}  // namespace tolvanix
