// Conversions between narrow and wide text, and from wide text to UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace tolvanix {

// Byte for unit: each byte becomes the UTF-16 unit of the same value (0x00 to 0xFF), so that
// narrow text of any encoding survives the way through wide documents and back.
std::u16string widen(std::string_view text);

// Unit for byte: a unit up to 0xFF becomes that byte, a unit above becomes '?'.
std::string narrow(std::u16string_view text);

// The text as UTF-8 that an XML 1.0 document may hold. Units that are a valid UTF-8 sequence (as
// `widen` makes them of UTF-8 text) go out as those bytes; every other unit or surrogate pair as
// the UTF-8 of its character; a lone surrogate, or a character that XML does not allow
// (https://www.w3.org/TR/xml/#charsets), as U+FFFD.
std::string toXmlUtf8(std::u16string_view text);

}  // namespace tolvanix
