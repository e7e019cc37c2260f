// The devices of this computer, for one installation from one INF file: looks for the device, has
// the helper program install the driver.
#pragma once

#include <cstdint>

#include "install/ProgressLine.h"
#include "text/SPString.h"
#include "winapi/Owner.h"

namespace tolvanix {

class CInf;

class CDevInfoSet {
 public:
  // Results of `FindExistingDevice`.
  static constexpr int kListUnavailable = -1;
  static constexpr int kNotFound = 0;
  static constexpr int kFound = 1;

  CDevInfoSet();
  CDevInfoSet(const CDevInfoSet&) = delete;
  CDevInfoSet& operator=(const CDevInfoSet&) = delete;
  virtual ~CDevInfoSet() = default;

  // Binds the set to an opened INF file, which must outlive it. 0 or the platform's error code.
  DWORD Create(const CInf& boundInf);

  // Whether one of a present device's hardware IDs is this one, letter case aside.
  int FindExistingDevice(const char* wantedId);

  // Whether this is a 32-bit process on a 64-bit system. Ends the process, with the platform's
  // error code, when that cannot be told.
  static bool IsOSArchitectureWow64();

  // Runs the helper program for the device found and the bound INF file. 0 when it installed the
  // driver, -1 when it could not be run to its end, else its exit code.
  int UpdateDriver(const DeviceCount& count = {});

  // After UpdateDriver: the new driver works only after a restart.
  bool getRebootRequired() const { return rebootRequired != 0; }

 private:
  bool searchDevices(HDEVINFO devices, const SPString& wantedId);

  DeviceSetOwner deviceInfoSet;
  const CInf* inf = nullptr;
  SP_DEVINFO_DATA deviceInfoData{};
  SPString hardwareId;
  std::uint32_t rebootRequired = 0;
};

}  // namespace tolvanix
