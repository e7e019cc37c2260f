#include "install/DevHelper.h"

#include <cstring>

#include "log/DebugWriter.h"
#include "winapi/Owner.h"

namespace tolvanix {

namespace {

// The error of a field request that failed, traced unless the line just does not have the field.
DWORD reportFieldError(int sourceLine) {
  const DWORD error = lastErrorOr(ERROR_INVALID_PARAMETER);  // Wine sets none for a missing field
  if (error == ERROR_INVALID_PARAMETER) return error;
  PrintError(error, "DevHelper, GetField", sourceLine);
  return error;
}

}  // namespace

DWORD GetField(INFCONTEXT& context, unsigned index, std::string& text) {
  char usual[256];  // one call reads nearly every field
  DWORD size = 0;
  if (SetupGetStringFieldA(&context, index, usual, sizeof usual, &size) != FALSE) {
    text = usual;
    return ERROR_SUCCESS;
  }
  text.clear();
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return reportFieldError(__LINE__);
  text.resize(size);
  if (SetupGetStringFieldA(&context, index, text.data(), size, nullptr) == FALSE) {
    text.clear();
    return reportFieldError(__LINE__);
  }
  text.resize(std::strlen(text.c_str()));
  return ERROR_SUCCESS;
}

DWORD FindField(INFCONTEXT& context, unsigned index) {
  // No room but for an empty text: a field that does not fit is there, too, and the platform need
  // not put it together.
  char room = '\0';
  const BOOL copied = SetupGetStringFieldA(&context, index, &room, sizeof room, nullptr);
  if (copied != FALSE || GetLastError() == ERROR_INSUFFICIENT_BUFFER) return ERROR_SUCCESS;
  return reportFieldError(__LINE__);
}

DWORD lastErrorOr(DWORD fallback) {
  const DWORD code = GetLastError();
  return code != ERROR_SUCCESS ? code : fallback;
}

void PrintError(DWORD code, const char* place, int line) {
  if (!debugLevelAtLeast(kTraceSteps)) return;
  char* text = nullptr;
  FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&text), 0,
      nullptr);
  const LocalMemoryOwner owner(text);
  TRACE_STEP("\n%s, line = %d, error code = %d, error msg = %s\n", place, line,
             static_cast<int>(code), text != nullptr ? text : "");
}

}  // namespace tolvanix
