#include <cstdlib>

#include "winapi/winapi.h"

namespace {
thread_local DWORD lastError = ERROR_SUCCESS;
}

DWORD GetLastError() { return lastError; }

void SetLastError(DWORD code) { lastError = code; }

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes) {
  if (flags != LPTR) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  // An allocation of no bytes answers an address all the same.
  void* const memory = std::calloc(bytes > 0 ? bytes : 1, 1);
  if (memory == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return memory;
}

HLOCAL LocalFree(HLOCAL memory) {
  std::free(memory);
  return nullptr;
}
