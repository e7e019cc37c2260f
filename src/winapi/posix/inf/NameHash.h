// Names of sections and strings are looked up by hash.
#pragma once

#include <cstdint>
#include <string_view>

#include "text/Ascii.h"

namespace tolvanix::winapi {

// FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/) of the text in lower case.
inline std::uint32_t hashIgnoringCase(std::string_view text) {
  std::uint32_t hash = 2166136261U;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(toLower(c))) * 16777619U;
  }
  return hash;
}

}  // namespace tolvanix::winapi
