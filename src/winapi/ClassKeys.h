// Where the registry holds what is known of installed drivers.
#pragma once

#include <string_view>

namespace tolvanix {

// Below HKEY_LOCAL_MACHINE. What follows is the name of a driver's key, which the SPDRP_DRIVER
// property of its device gives.
inline constexpr std::string_view kClassKeys = R"(SYSTEM\CurrentControlSet\Control\Class\)";

}  // namespace tolvanix
