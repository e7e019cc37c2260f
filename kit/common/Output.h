// Where a command writes what it has to say.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace tolvanix::kit {

// The columns that a line may have on standard output: what COLUMNS says, else the width of the
// terminal; none where it is no terminal.
std::optional<std::size_t> lineLimit();

// UTF-8. Throws BadInput when it cannot be written.
void print(const std::string& text);

}  // namespace tolvanix::kit
