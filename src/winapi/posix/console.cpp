#include <sys/ioctl.h>
#include <unistd.h>

#include "winapi/posix/base/Failure.h"
#include "winapi/posix/base/KernelObjects.h"
#include "winapi/winapi.h"

BOOL GetConsoleScreenBufferInfo(HANDLE console, CONSOLE_SCREEN_BUFFER_INFO* information) {
  constexpr winsize kUsual{25, 80, 0, 0};
  const auto* const stream = tolvanix::winapi::handleObject<tolvanix::winapi::Stream>(console);
  if (stream == nullptr) return FALSE;
  winsize size{};
  if (isatty(stream->get()) == 0 || ioctl(stream->get(), TIOCGWINSZ, &size) != 0) {
    return tolvanix::winapi::fail(ERROR_INVALID_HANDLE);
  }
  if (size.ws_col == 0) size = kUsual;
  *information = {};
  information->dwSize = {static_cast<SHORT>(size.ws_col), static_cast<SHORT>(size.ws_row)};
  return TRUE;
}
