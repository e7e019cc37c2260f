// How much room a text takes on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvanix::kit {

// In columns: two for a wide character of East Asia or a picture, none for one that combines with
// the character before it. For valid UTF-8.
std::size_t displayWidth(std::string_view text);

// The text, or as much of it as fits with an ellipsis. A line break or another control character,
// which could do anything to a terminal, becomes a blank.
std::string shortened(std::string_view text, std::size_t width);

}  // namespace tolvanix::kit
