#include "xml/SPXMLResult.h"

#include <string>

#include "xml/SPXMLObject.h"
#include "xml/XMLQuery.h"

namespace tolvanix {

SPUString SPXMLResult::getMessage(std::uint32_t index) const {
  return index < messages.size() ? messages[index] : SPUString();
}

SPUString SPXMLResult::getAllMessages() const {
  SPUString all;
  for (const SPUString& message : messages) {
    all += message;
    all += u"\r\n";
  }
  return all;
}

void SPXMLResult::readMessages(std::u16string_view text) {
  constexpr std::u16string_view kMessage = u"Message";
  xmlquery::forEachElement(text, kMessage, [&](std::u16string_view element) {
    messages.emplace_back(xmlquery::element(element, kMessage, 0)->inner);
    return true;
  });
}

SPUString SPXMLResult::buildResult(const SPUString& name,
                                   const std::vector<SPXMLAttribute>& attributes) const {
  SPUString children;
  for (const SPUString& message : messages) {
    children +=
        SPXMLObject::buildElement(SPUString(u"Message"), {}, SPXMLObject::escapeText(message));
  }
  const SPUString element = SPXMLObject::buildElement(name, attributes, SPUString());
  return SPXMLObject::insertChild(element, name, children);
}

}  // namespace tolvanix
