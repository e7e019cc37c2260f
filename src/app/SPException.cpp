#include "app/SPException.h"

#include <utility>

namespace tolvanix {

SPException::SPException(std::uint32_t number, SPUString text)
    : errorNumber(number), message(std::move(text)) {}

SPException::SPException(std::uint32_t number, const char* text)
    : SPException(number, SPUString(text)) {}

SPException::SPException(std::uint32_t number, const char16_t* text)
    : SPException(number, SPUString(text)) {}

}  // namespace tolvanix
