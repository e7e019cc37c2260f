// The outcome of an operation, in a document.
#pragma once

#include "xml/SPXMLResult.h"

namespace tolvanix {

class SPXMLStatus : public SPXMLResult {
 public:
  SPXMLStatus() = default;
  explicit SPXMLStatus(std::u16string_view text) { SPXMLStatus::parseXML(text); }

  // Empty, messages or not, when there is no result.
  SPUString generateXML() const override;
  void parseXML(std::u16string_view text) override;
};

}  // namespace tolvanix
