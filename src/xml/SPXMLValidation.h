// One finding of the validation library.
#pragma once

#include "xml/SPXMLResult.h"

namespace tolvanix {

class SPXMLValidation : public SPXMLResult {
 public:
  SPXMLValidation() = default;
  explicit SPXMLValidation(std::u16string_view text) { SPXMLValidation::parseXML(text); }

  SPUString generateXML() const override;
  void parseXML(std::u16string_view text) override;

  // "qualification", "hard", "soft", "info", or any other word.
  const SPUString& getType() const { return type.getValue(); }

 private:
  SPXMLAttribute type{u"type"};
};

}  // namespace tolvanix
