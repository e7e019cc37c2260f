// How much room a text takes on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvanix::kit {

// In columns: two for a wide character of East Asia or a picture, none for one that combines with
// the character before it. For valid UTF-8.
std::size_t displayWidth(std::string_view text);

// The text with a blank for each line break or other control character, which could do anything to
// a terminal.
std::string printable(std::string_view text);

// The printable text, or as much of it as fits with an ellipsis.
std::string shortened(std::string_view text, std::size_t width);

}  // namespace tolvanix::kit
