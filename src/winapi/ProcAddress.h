// Looks up a library's export as a function of the type that the caller knows it to have.
#pragma once

#include "winapi/winapi.h"

namespace tolvanix {

// Null when the library has no such export (GetLastError says why).
template <typename Function>
Function procAddress(HMODULE library, const char* name) {
  // By way of void (*)(), which the compiler takes as "of any type".
  return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}

}  // namespace tolvanix
