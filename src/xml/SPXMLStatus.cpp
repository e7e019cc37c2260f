#include "xml/SPXMLStatus.h"

#include "xml/XMLQuery.h"

namespace tolvanix {

namespace {
constexpr std::u16string_view kStatusElement = u"SPStatus";
}

SPUString SPXMLStatus::generateXML() const {
  if (result.getValue().empty()) return {};
  return buildResult(SPUString(kStatusElement), {result, reboot, extMessage});
}

void SPXMLStatus::parseXML(std::u16string_view text) {
  const xmlquery::AttributeReader attributes(text, kStatusElement);
  attributes.read(result);
  attributes.read(reboot);
  attributes.read(extMessage);
  readMessages(text);
}

}  // namespace tolvanix
