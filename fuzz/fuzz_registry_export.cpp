// Registry exports, and private-profile files, which the platform layer reads too.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "winapi/posix/base/ProfileText.h"
#include "winapi/posix/machine/RegistryExport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  try {
    tolvanix::winapi::readRegistryExport(text, [](std::string_view) { return true; });
  } catch (const tolvanix::winapi::MalformedExport&) {
    // Most inputs are.
  }
  tolvanix::winapi::profileSectionNames(text);
  tolvanix::winapi::profileValue(text, "FilterDevices", "VendorID");
  return 0;
}
