// Files and their names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvanix::kit {

// Far above the trace of a large computer.
constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 30;

// False for what does not exist.
bool isFile(const std::string& name);
bool isFolder(const std::string& name);

// With '/' and '\' as separators, whatever the system.
std::string_view withoutFolder(std::string_view path);

// The bytes of the file. Throws BadInput for what is no file, cannot be read, or is larger than
// that.
std::string readFile(const std::string& name, std::uint64_t largest = kLargestFile);

// Replaces the file. Throws BadInput when it cannot be written.
void writeFile(const std::string& name, const std::string& bytes);

}  // namespace tolvanix::kit
