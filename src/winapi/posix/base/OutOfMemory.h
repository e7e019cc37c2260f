// What a platform function does when there is not enough memory for it: fail, and throw nothing.
#pragma once

#include <cstdio>
#include <new>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

// For the handler of std::bad_alloc that a function's body has: sets the last error and gives back
// the value by which the function fails. Also one line on standard error, because to some callers
// whatever cannot be read is just not there.
template <typename Failure>
Failure outOfMemory(Failure failure) {
  std::fputs("tolvanix: there is not enough memory\n", stderr);
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return failure;
}

}  // namespace tolvanix::winapi
