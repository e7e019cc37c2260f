// What findings and statuses share: an outcome and messages.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "text/SPUString.h"
#include "xml/SPXMLAttribute.h"
#include "xml/SPXMLGenerator.h"

namespace tolvanix {

class SPXMLResult : public SPXMLGenerator {
 public:
  const SPUString& getResult() const { return result.getValue(); }
  std::uint32_t getMessageCount() const { return static_cast<std::uint32_t>(messages.size()); }
  // As read, with entities; empty when there is no such message.
  SPUString getMessage(std::uint32_t index) const;
  const std::vector<SPUString>& getMessages() const { return messages; }
  // Each message followed by a carriage return and a line feed.
  SPUString getAllMessages() const;

 protected:
  SPXMLResult() = default;

  // Appends the text of every Message element, wherever it is in the text.
  void readMessages(std::u16string_view text);
  // An element of that name with the attributes, and a Message child for each message.
  SPUString buildResult(const SPUString& name, const std::vector<SPXMLAttribute>& attributes) const;

  std::vector<SPUString> messages;
  SPXMLAttribute result{u"result"};
  SPXMLAttribute reboot{u"reboot"};          // SPXMLStatus only
  SPXMLAttribute extMessage{u"extMessage"};  // SPXMLStatus only
};

}  // namespace tolvanix
