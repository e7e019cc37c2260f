#include "xml/SPXMLValidation.h"

namespace tolvanix {

SPUString SPXMLValidation::generateXML() const {
  return buildResult(elementName, {type, result});
}

void SPXMLValidation::parseXML(const SPUString& text) {
  elementName = u"Validation";
  type.readFrom(text, elementName);
  result.readFrom(text, elementName);
  readMessages(text);
}

}  // namespace tolvanix
