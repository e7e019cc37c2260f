// On Windows the system installs the driver; that takes an administrator's rights.
#include <windows.h>  // first: the others stand on it

#include <newdev.h>

#include <cstdio>

#include "install.h"

ExitCode install(const char* hardwareId, const char* infPath) {
  BOOL restart = FALSE;
  // Forced: whether the package suits the computer was decided before; without it the system
  // refuses to install a driver once more.
  if (UpdateDriverForPlugAndPlayDevicesA(nullptr, hardwareId, infPath, INSTALLFLAG_FORCE,
                                         &restart) == FALSE) {
    const DWORD error = GetLastError();
    std::fprintf(stderr, "%s: not installed, error %lu\n", infPath, error);
    return error == ERROR_NO_SUCH_DEVINST ? kNoDevice : kNotInstalled;
  }
  return restart != FALSE ? kInstalledRestart : kInstalled;
}
