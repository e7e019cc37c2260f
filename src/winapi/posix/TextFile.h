// Text files of the platform's formats (INF, INI), read whole.
#pragma once

#include <string>

#include "winapi/winapi.h"

namespace tolvanix {

// Reads the file of that name ('\' and '/' alike) into `text`, whose memory is used again. Text
// with a UTF-16 byte-order mark becomes UTF-8, other bytes stay as they are; a mark is left out.
// The error code of the system; `text` is then unspecified. Only regular files can be read.
DWORD readTextFile(const char* fileName, std::string& text);

}  // namespace tolvanix
