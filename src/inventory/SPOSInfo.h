// The operating system that the program runs on.
#pragma once

#include <cstdint>

#include "text/SPUString.h"

namespace tolvanix {

class SPOSInfo {
 public:
  // Measures the system; throws SPException 0 when it does not give its version.
  SPOSInfo();
  SPOSInfo(const SPOSInfo&) = default;
  SPOSInfo& operator=(const SPOSInfo&) = default;
  virtual ~SPOSInfo() = default;

  const SPUString& getArch() const { return osArch; }

 protected:
  SPUString osArch;  // "x64" or "ia64"; "na" after reading a document without it
  std::uint32_t majorVersion = 0;
  std::uint32_t minorVersion = 0;
  std::uint32_t spMajorVersion = 0;
  std::uint32_t spMinorVersion = 0;
  SPUString osVendor;

 private:
  void measureVersion();
};

// The minor version of a Windows that reports 6.2, which later versions do for compatibility.
// `verify(minor)` asks the system whether it is 6.minor: 0 for yes, otherwise the error code.
std::uint32_t minorVersionOfReported62(std::uint32_t (*verify)(std::uint32_t minor));

}  // namespace tolvanix
