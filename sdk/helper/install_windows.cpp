// On Windows the system installs the driver; that takes an administrator's rights.
#include <windows.h>  // first: the others need it

#include <newdev.h>

#include <cstdio>

#include "SystemError.h"
#include "install.h"

namespace {

ExitCode failed(const char* infPath) {
  const DWORD error = GetLastError();
  std::fprintf(stderr, "%s: not installed, error %lu\n", infPath, error);
  return exitCodeFor(error);
}

}  // namespace

ExitCode install(const char* hardwareId, const char* infPath) {
  if (GetFileAttributesA(infPath) == INVALID_FILE_ATTRIBUTES) return failed(infPath);
  // Not forced: a driver that is as good or better stays, also when nobody has judged the package
  // (-uhid). Without a prompt: nobody would see it, and the helper would wait for ever.
  // A variable for the restart keeps the system from asking for that.
  constexpr DWORD kFlags = INSTALLFLAG_NONINTERACTIVE;
  BOOL restart = FALSE;
  if (UpdateDriverForPlugAndPlayDevicesA(nullptr, hardwareId, infPath, kFlags, &restart) == FALSE) {
    return failed(infPath);
  }
  return restart != FALSE ? kInstalledRestart : kInstalled;
}
