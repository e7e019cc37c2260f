#include "install/DevHelper.h"

#include "log/DebugWriter.h"
#include "winapi/Owner.h"

namespace tolvanix {

namespace {

constexpr char kGetFieldPlace[] = "DevHelper, GetField";

// The last error of a field request that failed. Some systems set none for a missing field.
DWORD fieldError() {
  const DWORD code = GetLastError();
  return code != ERROR_SUCCESS ? code : ERROR_INVALID_PARAMETER;
}

}  // namespace

DWORD GetField(INFCONTEXT& context, unsigned index, std::string& text) {
  text.clear();
  DWORD size = 0;
  if (SetupGetStringFieldA(&context, index, nullptr, 0, &size) == FALSE) {
    const DWORD code = fieldError();
    if (code != ERROR_INVALID_PARAMETER) PrintError(code, kGetFieldPlace, __LINE__);
    return code;
  }
  text.resize(size);
  if (SetupGetStringFieldA(&context, index, text.data(), size, nullptr) == FALSE) {
    const DWORD code = fieldError();
    PrintError(code, kGetFieldPlace, __LINE__);
    text.clear();
    return code;
  }
  text.resize(text.find('\0'));
  return ERROR_SUCCESS;
}

DWORD FindField(INFCONTEXT& context, unsigned index) {
  const BOOL found = SetupGetStringFieldA(&context, index, nullptr, 0, nullptr);
  return found != FALSE ? ERROR_SUCCESS : fieldError();
}

void PrintError(DWORD code, const char* place, int line) {
  if (!debugLevelAtLeast(kTraceSteps)) return;
  char* text = nullptr;
  FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&text), 0,
      nullptr);
  const LocalMemoryOwner owner(text);
  traceStep("\n%s, line = %d, error code = %d, error msg = %s\n", place, line,
            static_cast<int>(code), text != nullptr ? text : "");
}

}  // namespace tolvanix
