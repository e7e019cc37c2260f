#include "xml/SPXMLStatus.h"

namespace tolvanix {

SPUString SPXMLStatus::generateXML() const {
  if (result.getValue().empty()) return {};
  return buildResult(elementName, {result, reboot, extMessage});
}

void SPXMLStatus::parseXML(const SPUString& text) {
  elementName = u"SPStatus";
  result.readFrom(text, elementName);
  reboot.readFrom(text, elementName);
  extMessage.readFrom(text, elementName);
  readMessages(text);
}

}  // namespace tolvanix
