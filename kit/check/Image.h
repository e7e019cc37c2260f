// Programs and libraries as files.
#pragma once

#include <filesystem>
#include <string_view>

namespace tolvanix::kit {

enum class Image { kWindows, kLinux, kScript, kOther };

constexpr bool kOnWindows = std::filesystem::path::preferred_separator == '\\';

// What can be loaded and started here; a script can be started on Linux, too.
constexpr Image kImageHere = kOnWindows ? Image::kWindows : Image::kLinux;

// By how the file begins.
Image imageOf(std::string_view bytes);

// "for Windows"
const char* nameOf(Image image);

}  // namespace tolvanix::kit
