// Functions that programs find in the library "kernel32" at run time, by GetProcAddress.
#pragma once

#include "winapi/winapi.h"

void GetNativeSystemInfo(SYSTEM_INFO* information);
BOOL IsWow64Process(HANDLE process, BOOL* wow64);
