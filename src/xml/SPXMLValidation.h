// One finding of the validation library.
#pragma once

#include "xml/SPXMLResult.h"

namespace tolvanix {

class SPXMLValidation : public SPXMLResult {
 public:
  SPXMLValidation() = default;
  explicit SPXMLValidation(const SPUString& text) { SPXMLValidation::parseXML(text); }

  SPUString generateXML() const override;
  void parseXML(const SPUString& text) override;

  // "qualification", "hard", "soft", "info", or any other word.
  const SPUString& getType() const { return type.getValue(); }

 private:
  SPUString elementName{u"Validation"};
  SPXMLAttribute type{"type"};
};

}  // namespace tolvanix
