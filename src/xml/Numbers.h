// Numbers as documents have them, read as the C library's scan formats do, within 32 bits.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tolvanix {

// A decimal number with leading white space, one sign and anything after it; beyond the range the
// nearest limit. None when there is no digit.
std::optional<std::int32_t> readDecimal(std::u16string_view text);

// A hexadecimal number without sign, with leading white space and anything after it. The bits of a
// number up to FFFFFFFF, so that numbers above 7FFFFFFF are negative; -1 when there is no digit or
// the number is larger.
std::int32_t readHexadecimal(std::u16string_view text);

}  // namespace tolvanix
