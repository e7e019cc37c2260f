// The one owner of platform handles: closes on destruction, moves, never copies.
#pragma once

#include <utility>

#include "winapi/winapi.h"

namespace tolvanix {

// Kind gives `type`, `invalid()` (the value that means "none", which differs between handle
// kinds: null for modules and keys, INVALID_HANDLE_VALUE for searches and device sets) and
// `close(type)`. Closing leaves the last error as it was.
template <typename Kind>
class Owner {
 public:
  using Handle = typename Kind::type;

  Owner() : handle(Kind::invalid()) {}
  explicit Owner(Handle owned) : handle(owned) {}
  Owner(Owner&& other) noexcept : handle(other.release()) {}
  Owner& operator=(Owner&& other) noexcept {
    reset(other.release());
    return *this;
  }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;
  ~Owner() { reset(); }

  Handle get() const { return handle; }
  explicit operator bool() const { return handle != Kind::invalid(); }

  Handle release() { return std::exchange(handle, Kind::invalid()); }

  // Closes what is held, then takes `next`.
  void reset(Handle next = Kind::invalid()) {
    const Handle old = std::exchange(handle, next);
    if (old == Kind::invalid() || old == next) return;
    const DWORD lastError = GetLastError();
    Kind::close(old);
    SetLastError(lastError);
  }

 private:
  Handle handle;
};

struct DeviceSetKind {
  using type = HDEVINFO;
  static type invalid() { return INVALID_HANDLE_VALUE; }
  static void close(type handle) { SetupDiDestroyDeviceInfoList(handle); }
};
struct RegistryKeyKind {
  using type = HKEY;
  static type invalid() { return nullptr; }
  static void close(type handle) { RegCloseKey(handle); }
};
struct InfKind {
  using type = HINF;
  static type invalid() { return INVALID_HANDLE_VALUE; }
  static void close(type handle) { SetupCloseInfFile(handle); }
};
struct FindKind {
  using type = HANDLE;
  static type invalid() { return INVALID_HANDLE_VALUE; }
  static void close(type handle) { FindClose(handle); }
};
// Processes, threads and pipe ends: calls return null or nothing when they fail.
struct KernelObjectKind {
  using type = HANDLE;
  static type invalid() { return nullptr; }
  static void close(type handle) { CloseHandle(handle); }
};
struct ModuleKind {
  using type = HMODULE;
  static type invalid() { return nullptr; }
  static void close(type handle) { FreeLibrary(handle); }
};
struct LocalMemoryKind {
  using type = HLOCAL;
  static type invalid() { return nullptr; }
  static void close(type handle) { LocalFree(handle); }
};

using DeviceSetOwner = Owner<DeviceSetKind>;
using RegistryKeyOwner = Owner<RegistryKeyKind>;
using InfOwner = Owner<InfKind>;
using FindOwner = Owner<FindKind>;
using KernelObjectOwner = Owner<KernelObjectKind>;
using ModuleOwner = Owner<ModuleKind>;
using LocalMemoryOwner = Owner<LocalMemoryKind>;

}  // namespace tolvanix
