// What a user should know and no result of the platform's functions can say.
#pragma once

#include <string>

namespace tolvanix::winapi {

// One line on standard error, after the program's name.
void report(const std::string& problem);

}  // namespace tolvanix::winapi
