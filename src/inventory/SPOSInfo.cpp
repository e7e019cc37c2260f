#include "inventory/SPOSInfo.h"

#include "app/SPException.h"
#include "winapi/ProcAddress.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

// The structure without service pack numbers is the start of the extended one.
bool readVersion(OSVERSIONINFOEXA& version) {
  auto* const basic = reinterpret_cast<OSVERSIONINFOA*>(&version);
  version = {};
  version.dwOSVersionInfoSize = sizeof(OSVERSIONINFOEXA);
  if (GetVersionExA(basic) != FALSE) return true;
  version.dwOSVersionInfoSize = sizeof(OSVERSIONINFOA);
  return GetVersionExA(basic) != FALSE;
}

std::uint32_t verifyVersion6(std::uint32_t minor) {
  constexpr DWORD kTypes = VER_MAJORVERSION | VER_MINORVERSION;
  OSVERSIONINFOEXW wanted = {};
  wanted.dwOSVersionInfoSize = sizeof wanted;
  wanted.dwMajorVersion = 6;
  wanted.dwMinorVersion = minor;
  DWORDLONG mask = VerSetConditionMask(0, VER_MAJORVERSION, VER_EQUAL);
  mask = VerSetConditionMask(mask, VER_MINORVERSION, VER_EQUAL);
  return VerifyVersionInfoW(&wanted, kTypes, mask) != FALSE ? ERROR_SUCCESS : GetLastError();
}

const char16_t* measureArchitecture() {
  using GetNativeSystemInfoFunction = void(WINAPI*)(SYSTEM_INFO*);
  const auto getNativeSystemInfo =
      procAddress<GetNativeSystemInfoFunction>(GetModuleHandleA("kernel32"), "GetNativeSystemInfo");
  SYSTEM_INFO system = {};
  if (getNativeSystemInfo != nullptr) getNativeSystemInfo(&system);
  return system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_IA64 ? u"ia64" : u"x64";
}

}  // namespace

SPOSInfo::SPOSInfo() : osArch(measureArchitecture()), osVendor(u"Microsoft") {
  measureVersion();
}

void SPOSInfo::measureVersion() {
  OSVERSIONINFOEXA version;
  if (!readVersion(version)) throw SPException(0, "Cannot get current OS version.");
  majorVersion = version.dwMajorVersion;
  minorVersion = version.dwMinorVersion;
  spMajorVersion = version.wServicePackMajor;
  spMinorVersion = version.wServicePackMinor;
  if (majorVersion == 6 && minorVersion == 2)
    minorVersion = minorVersionOfReported62(verifyVersion6);
}

std::uint32_t minorVersionOfReported62(std::uint32_t (*verify)(std::uint32_t minor)) {
  constexpr std::uint32_t kReported = 2;
  constexpr std::uint32_t kLast = 5;
  for (std::uint32_t minor = kReported; minor <= kLast; ++minor) {
    if (verify(minor) != ERROR_OLD_WIN_VERSION) return minor;
  }
  return kReported;
}

}  // namespace tolvanix
