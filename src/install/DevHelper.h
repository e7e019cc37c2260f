// Small helpers of the driver installation around platform calls.
#pragma once

#include <string>

#include "winapi/winapi.h"

namespace tolvanix {

// Reads one string field of an INF line, 0 being the key. 0 or the platform's error code, with
// `text` empty then; a field that the line does not have gives ERROR_INVALID_PARAMETER, untraced.
DWORD GetField(INFCONTEXT& context, unsigned index, std::string& text);

// Whether the line has the field: what GetField would answer, without reading the text or tracing.
DWORD FindField(INFCONTEXT& context, unsigned index);

// Traces a failed platform call, at the level of steps: the place, the source line, the code and
// the system's text for it.
void PrintError(DWORD code, const char* place, int line);

}  // namespace tolvanix
