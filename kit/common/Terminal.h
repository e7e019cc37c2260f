// The terminal that standard output is, if it is one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace tolvanix::kit {

// In columns; none if standard output is no terminal.
std::optional<std::size_t> terminalWidth();

// Writes UTF-8, whatever the terminal's own encoding is. False when not all of it was written.
bool writeStandardOutput(const std::string& text);

}  // namespace tolvanix::kit
