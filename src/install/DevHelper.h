// Small helpers of the driver installation around platform calls.
#pragma once

#include <string>

#include "winapi/winapi.h"

namespace tolvanix {

// Reads one string field of an INF line, 0 being the key. 0 or the platform's error code, with
// `text` empty then; a field that the line does not have gives ERROR_INVALID_PARAMETER, untraced.
DWORD GetField(INFCONTEXT& context, unsigned index, std::string& text);

// Whether the line has the field: what GetField returns, without reading the text.
DWORD FindField(INFCONTEXT& context, unsigned index);

// The last error of a call that failed; `fallback` when the platform set none, since 0 would be
// success.
DWORD lastErrorOr(DWORD fallback);

// Traces a failed platform call, at the level of steps: the place, the source line, the code and
// the system's text for it.
void PrintError(DWORD code, const char* place, int line);

}  // namespace tolvanix
