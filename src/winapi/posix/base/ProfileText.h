// The text of a private-profile (INI) file, searched without copying it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tolvanix::winapi {

// The names of the sections in the order of the file, each with a terminating zero. A name that
// comes again is listed again.
std::string profileSectionNames(std::string_view text);

// The value of the key in the first section of that name, without blanks and one pair of quotes
// around it. Names are compared without regard to case.
std::optional<std::string_view> profileValue(std::string_view text, std::string_view section,
                                             std::string_view key);

}  // namespace tolvanix::winapi
