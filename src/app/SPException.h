// The exception of the lower layers (version measurement, file reading, execution). It never
// leaves a KivWrapper operation: each turns it into a status.
#pragma once

#include <cstdint>

#include "text/SPUString.h"

namespace tolvanix {

class SPException {
 public:
  SPException(std::uint32_t number, SPUString text);
  SPException(std::uint32_t number, const char* text);
  SPException(std::uint32_t number, const char16_t* text);
  SPException(const SPException&) = default;
  SPException& operator=(const SPException&) = default;
  virtual ~SPException() = default;

  std::uint32_t getErrorNum() const { return errorNumber; }
  const SPUString& getMessage() const { return message; }

 private:
  std::uint32_t errorNumber;
  SPUString message;
};

}  // namespace tolvanix
