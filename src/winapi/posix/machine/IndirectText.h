// Indirect texts, as device properties hold them in a registry: a reference to a resource or an INF
// string, followed by its text (learn.microsoft.com/windows/win32/api/shlwapi/
// nf-shlwapi-shloadindirectstring describes the reference).
#pragma once

#include <optional>
#include <string>

namespace tolvanix::winapi {

// The text that a property means:
//   @oem4.inf,%key%;Text              Text
//   @file.sys,#65536;bus %1;(0,31)    bus 0
//   any other text                    unchanged
// None for a reference that carries no text.
std::optional<std::string> resolveIndirectText(const std::string& text);

}  // namespace tolvanix::winapi
