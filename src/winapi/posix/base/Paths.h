// Paths as winapi.h has them, separated by '\', and those of this system ("native"), by '/'.
#pragma once

#include <string>
#include <string_view>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

// Every '\' turned into '/', and the other way round.
std::string toNativePath(std::string_view path);
std::string fromNativePath(std::string_view path);

// The absolute native path of a name given in either form: resolved against the current directory,
// with ".", ".." and doubled separators worked out on the text alone. Keeps a separator at the
// end. Empty, with errno, when the current directory has no path.
std::string fullNativePath(std::string_view path);

// The last-error value for an errno that using a native path gave.
DWORD pathError(int error, const std::string& nativePath);

// True when the name holds a character that no name of a file may hold.
bool hasReservedCharacter(std::string_view path);

}  // namespace tolvanix::winapi
