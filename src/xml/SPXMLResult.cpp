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
    // Asked anew: in the whole text the start tag may have been another one that looks the same.
    messages.emplace_back(xmlquery::innerText(element, kMessage));
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
