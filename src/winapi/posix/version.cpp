#include "winapi/posix/kernel32.h"

void GetNativeSystemInfo(SYSTEM_INFO* information) {
  *information = SYSTEM_INFO{};
  information->wProcessorArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
}

BOOL IsWow64Process(HANDLE /*process*/, BOOL* wow64) {
  *wow64 = FALSE;
  return TRUE;
}

LANGID GetSystemDefaultLangID() {
  return MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
}
