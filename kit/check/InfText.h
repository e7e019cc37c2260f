// What an INF file says, whether or not the program takes it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "winapi/winapi.h"

namespace tolvanix::kit {

enum class InfEncoding { kAscii, kNarrow, kUtf8, kUtf16, kUtf16BigEndian, kUtf16Unmarked };

// By the byte-order mark; without one, by the bytes.
InfEncoding infEncoding(std::string_view bytes);
const char* nameOf(InfEncoding encoding);

// A value of [Version]; empty when there is none.
std::string versionValue(HINF inf, std::string_view key, unsigned field);

// The hardware IDs of all models sections that [Manufacturer] names, each cut before "&REV".
std::vector<std::string> listedIds(HINF inf);

}  // namespace tolvanix::kit
