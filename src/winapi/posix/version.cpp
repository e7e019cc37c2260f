// The presented machine's version and language, from the registry values that hold them.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "text/Hex.h"
#include "winapi/posix/base/Failure.h"
#include "winapi/posix/kernel32.h"
#include "winapi/posix/machine/PresentedMachine.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::readHex;
using tolvanix::winapi::kLanguageKey;
using tolvanix::winapi::kVersionKey;
using tolvanix::winapi::outOfMemory;
using tolvanix::winapi::presentedMachine;
using tolvanix::winapi::RegistryValue;
using tolvanix::winapi::textIn;

constexpr DWORD kPlatformNt = 2;  // VER_PLATFORM_WIN32_NT
constexpr LANGID kUsEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

struct Version {
  DWORD major = 0;
  DWORD minor = 0;
  DWORD build = 0;
  std::string servicePack;
  WORD servicePackMajor = 0;
};

std::optional<std::string> textOf(const std::optional<RegistryValue>& value) {
  if (!value || value->type != REG_SZ) return std::nullopt;
  return textIn(*value);
}

// The decimal number at the start of `text`, which loses it; none when there is none.
std::optional<DWORD> takeNumber(std::string_view& text) {
  DWORD number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

std::optional<DWORD> numberOf(const RegistryValue& value) {
  DWORD number = 0;
  if (value.type != REG_DWORD || value.data.size() != sizeof number) return std::nullopt;
  std::memcpy(&number, value.data.data(), sizeof number);
  return number;
}

// "6.1"
bool readDottedVersion(std::string_view text, Version& version) {
  const std::optional<DWORD> majorNumber = takeNumber(text);
  if (!majorNumber || !text.starts_with('.')) return false;
  text.remove_prefix(1);
  const std::optional<DWORD> minorNumber = takeNumber(text);
  if (!minorNumber) return false;
  version.major = *majorNumber;
  version.minor = *minorNumber;
  return true;
}

// Two numbers from Windows 10 on, one text before it. A machine without either has version 0.0.
bool readNumbers(Version& version) {
  const auto valueOf = [](const char* name) { return presentedMachine().value(kVersionKey, name); };
  const auto majorValue = valueOf("CurrentMajorVersionNumber");
  if (majorValue) {
    const auto minorValue = valueOf("CurrentMinorVersionNumber");
    const std::optional<DWORD> majorNumber = numberOf(*majorValue);
    const std::optional<DWORD> minorNumber = minorValue ? numberOf(*minorValue) : DWORD{0};
    version.major = majorNumber.value_or(0);
    version.minor = minorNumber.value_or(0);
    return majorNumber && minorNumber;
  }
  const auto dotted = valueOf("CurrentVersion");
  return !dotted || readDottedVersion(textOf(dotted).value_or(""), version);
}

bool readBuild(Version& version) {
  for (const char* const name : {"CurrentBuildNumber", "CurrentBuild"}) {
    const auto value = presentedMachine().value(kVersionKey, name);
    if (!value) continue;
    const std::string text = textOf(value).value_or("");
    std::string_view digits = text;
    const std::optional<DWORD> number = takeNumber(digits);
    version.build = number.value_or(0);
    return number.has_value();
  }
  return true;
}

// "Service Pack 1": the number in it is the pack's.
void readServicePack(Version& version) {
  version.servicePack = textOf(presentedMachine().value(kVersionKey, "CSDVersion")).value_or("");
  std::string_view digits = version.servicePack;
  digits.remove_prefix(std::min(digits.find_first_of("0123456789"), digits.size()));
  version.servicePackMajor = static_cast<WORD>(takeNumber(digits).value_or(0));
}

// None when a value of the version holds no number.
std::optional<Version> readVersion() {
  Version version;
  if (!readNumbers(version) || !readBuild(version)) return std::nullopt;
  readServicePack(version);
  return version;
}

}  // namespace

BOOL GetVersionExA(OSVERSIONINFOA* information) try {
  const bool extended =
      information != nullptr && information->dwOSVersionInfoSize == sizeof(OSVERSIONINFOEXA);
  if (!extended &&
      (information == nullptr || information->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA))) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  const std::optional<Version> version = readVersion();
  if (!version) {
    SetLastError(ERROR_INVALID_DATA);
    return FALSE;
  }
  // The extended structure starts as the basic one does.
  OSVERSIONINFOEXA whole{};
  whole.dwOSVersionInfoSize = information->dwOSVersionInfoSize;
  whole.dwMajorVersion = version->major;
  whole.dwMinorVersion = version->minor;
  whole.dwBuildNumber = version->build;
  whole.dwPlatformId = kPlatformNt;
  version->servicePack.copy(whole.szCSDVersion, sizeof whole.szCSDVersion - 1);
  whole.wServicePackMajor = version->servicePackMajor;
  std::memcpy(static_cast<void*>(information), &whole, information->dwOSVersionInfoSize);
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

// Three bits for each type, in the order of the types' bits.
DWORDLONG VerSetConditionMask(DWORDLONG conditionMask, DWORD typeMask, BYTE condition) {
  for (unsigned type = 0; type < 8; ++type) {
    if ((typeMask >> type & 1) != 0) {
      conditionMask |= static_cast<DWORDLONG>(condition & 7) << (3 * type);
    }
  }
  return conditionMask;
}

// Tests major and minor version for equality, the one question of the program.
BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* information, DWORD typeMask,
                        DWORDLONG conditionMask) try {
  constexpr DWORD kBoth = VER_MAJORVERSION | VER_MINORVERSION;
  if (information == nullptr || information->dwOSVersionInfoSize != sizeof(OSVERSIONINFOEXW) ||
      typeMask != kBoth || conditionMask != VerSetConditionMask(0, kBoth, VER_EQUAL)) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  const std::optional<Version> version = readVersion();
  if (!version) {
    SetLastError(ERROR_INVALID_DATA);
    return FALSE;
  }
  if (information->dwMajorVersion == version->major &&
      information->dwMinorVersion == version->minor) {
    return TRUE;
  }
  SetLastError(ERROR_OLD_WIN_VERSION);
  return FALSE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

LANGID GetSystemDefaultLangID() {
  const auto text = textOf(presentedMachine().value(kLanguageKey, "Default"));
  const auto language = text ? readHex(*text) : std::nullopt;
  return language ? static_cast<LANGID>(*language) : kUsEnglish;
}

void GetNativeSystemInfo(SYSTEM_INFO* information) {
  *information = {};
  information->wProcessorArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
}

BOOL IsWow64Process(HANDLE /*process: there are no others*/, BOOL* wow64) {
  if (wow64 == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  *wow64 = FALSE;
  return TRUE;
}
