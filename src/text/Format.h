// printf-style formatting into a string.
#pragma once

#include <string>

namespace tolvanix {

[[gnu::format(printf, 1, 2)]] std::string formatText(const char* format, ...);

}  // namespace tolvanix
