#include "xml/SPXMLValidation.h"

#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {
constexpr std::u16string_view kValidationElement = u"Validation";
}

SPUString SPXMLValidation::generateXML() const {
  return buildResult(SPUString(kValidationElement), {type, result});
}

void SPXMLValidation::parseXML(std::u16string_view text) {
  const xmlquery::AttributeReader attributes(text, kValidationElement);
  attributes.read(type);
  attributes.read(result);
  readMessages(text);
}

}  // namespace tolvanix
