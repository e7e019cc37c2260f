// What the errors of Windows mean for a helper program.
#pragma once

#include <cstdint>

#include "install.h"

// The exit code for the last error of a failed UpdateDriverForPlugAndPlayDevices: never one of
// success, and kNotInstalled for an error that needs no exit code of its own. Source:
// learn.microsoft.com/windows/win32/api/newdev/nf-newdev-updatedriverforplugandplaydevicesa
ExitCode exitCodeFor(std::uint32_t systemError);
