#include "check/Image.h"

namespace tolvanix::kit {

Image imageOf(std::string_view bytes) {
  if (bytes.starts_with("MZ")) return Image::kWindows;
  if (bytes.starts_with("\177ELF")) return Image::kLinux;
  return bytes.starts_with("#!") ? Image::kScript : Image::kOther;
}

const char* nameOf(Image image) {
  switch (image) {
    case Image::kWindows:
      return "for Windows";
    case Image::kLinux:
      return "for Linux";
    case Image::kScript:
      return "a script";
    default:
      return "no program";
  }
}

}  // namespace tolvanix::kit
