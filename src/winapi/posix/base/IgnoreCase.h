// Names of sections, keys and strings: ASCII letters compare without regard to case.
#pragma once

#include <strings.h>

#include <cstdint>
#include <string_view>

namespace tolvanix::winapi {

inline bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

// FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/) of the text in lower case.
inline std::uint32_t hashIgnoringCase(std::string_view text) {
  std::uint32_t hash = 2166136261U;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    hash = (hash ^ (byte >= 'A' && byte <= 'Z' ? byte | 0x20U : byte)) * 16777619U;
  }
  return hash;
}

}  // namespace tolvanix::winapi
