// The export table of a Windows library, wherever this runs
// (learn.microsoft.com/windows/win32/debug/pe-format).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvanix::kit {

// The names that a library for 64-bit Windows exports. None when the bytes are no such library or
// end too early; nothing outside them is read.
std::optional<std::vector<std::string>> peExports(std::string_view bytes);

}  // namespace tolvanix::kit
