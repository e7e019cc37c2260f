// What GetProcAddress finds in kernel32; the program knows these by their names alone.
#pragma once

#include "winapi/winapi.h"

// Fills the processor architecture only.
void GetNativeSystemInfo(SYSTEM_INFO* information);
// Always FALSE in `wow64`: this is a 64-bit program.
BOOL IsWow64Process(HANDLE process, BOOL* wow64);
