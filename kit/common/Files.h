// The files that the command line names.
#pragma once

#include <cstdint>
#include <string>

namespace tolvanix::kit {

// The document of a million devices is a third of it.
constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 30;

// The bytes of the file. Throws BadInput for what is no file, cannot be read, or is larger than
// that.
std::string readFile(const std::string& name, std::uint64_t largest = kLargestFile);

// Replaces the file. Throws BadInput when it cannot be written.
void writeFile(const std::string& name, const std::string& bytes);

}  // namespace tolvanix::kit
