// Pieces of sentences.
#pragma once

#include <cstddef>
#include <string>

namespace tolvanix::kit {

// "1 device", "2 devices".
std::string counted(std::size_t count, const std::string& what);

}  // namespace tolvanix::kit
