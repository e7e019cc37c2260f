// What every element class can do: write itself as XML text and read itself from one.
#pragma once

#include <string_view>

#include "text/SPUString.h"

namespace tolvanix {

class SPXMLGenerator {
 public:
  SPXMLGenerator() = default;
  SPXMLGenerator(const SPXMLGenerator&) = default;
  SPXMLGenerator& operator=(const SPXMLGenerator&) = default;
  SPXMLGenerator(SPXMLGenerator&&) noexcept = default;
  SPXMLGenerator& operator=(SPXMLGenerator&&) noexcept = default;

  virtual SPUString generateXML() const = 0;
  // Takes a text that holds the element: a whole document or the element alone.
  virtual void parseXML(std::u16string_view text) = 0;
  virtual ~SPXMLGenerator() = default;
};

}  // namespace tolvanix
