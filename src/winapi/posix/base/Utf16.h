// UTF-16 bytes as UTF-8 text. A lone surrogate becomes U+FFFD.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvanix::winapi {

enum class ByteOrder { kLittleEndian, kBigEndian };

// Appends the text of the bytes. The count of bytes that were taken: half a unit, or a high
// surrogate, at their end waits for more.
std::size_t appendUtf16(std::string_view bytes, ByteOrder order, std::string& text);

// The whole of little-endian bytes; an odd byte at the end is left out.
std::string utf16ToUtf8(std::string_view bytes);

}  // namespace tolvanix::winapi
