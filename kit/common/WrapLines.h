// Sentences on a terminal.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tolvanix::kit {

// The text with its lines broken at blanks where they are longer than the limit, if there is one;
// what follows is indented a little more than the line. For valid UTF-8.
std::string wrapLines(std::string_view text, std::optional<std::size_t> limit);

}  // namespace tolvanix::kit
