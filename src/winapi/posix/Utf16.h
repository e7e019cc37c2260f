// UTF-16LE bytes as UTF-8 text.
#pragma once

#include <string>
#include <string_view>

namespace tolvanix::winapi {

// A lone surrogate becomes U+FFFD; an odd byte at the end is left out.
std::string utf16ToUtf8(std::string_view bytes);

}  // namespace tolvanix::winapi
