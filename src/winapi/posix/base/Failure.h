// How a platform function fails: with a last error and the value that says so, and never by an
// exception.
#pragma once

#include <cstdio>
#include <new>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

template <typename Failure>
Failure fail(DWORD error, Failure failure) {
  SetLastError(error);
  return failure;
}

inline BOOL fail(DWORD error) {
  return fail(error, FALSE);
}

// For the handler of std::bad_alloc that a function's body has. Also one line on standard error,
// because to some callers whatever cannot be read is just not there.
template <typename Failure>
Failure outOfMemory(Failure failure) {
  std::fputs("tolvanix: there is not enough memory\n", stderr);
  return fail(ERROR_NOT_ENOUGH_MEMORY, failure);
}

}  // namespace tolvanix::winapi
