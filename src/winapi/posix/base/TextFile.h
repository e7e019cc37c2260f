// Text files of the platform's formats (INF, INI), read whole.
#pragma once

#include <cstddef>
#include <limits>
#include <string>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

// What becomes of a file in big-endian UTF-16.
enum class BigEndian { kRead, kRefused };

// Reads the file of that name ('\' and '/' alike), at most its first `limit` bytes, into `text`,
// whose memory is used again. Text with a UTF-16 byte-order mark becomes UTF-8, other bytes stay as
// they are; a mark is left out. The error code of the system, when `text` is unspecified;
// ERROR_INVALID_DATA for what is refused. Only regular files can be read.
DWORD readTextFile(const char* fileName, std::string& text, BigEndian bigEndian,
                   std::size_t limit = std::numeric_limits<std::size_t>::max());

}  // namespace tolvanix::winapi
