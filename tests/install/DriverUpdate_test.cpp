// What no command line can ask for; the rest stands in the whole runs of -uhid.
#include "install/DriverUpdate.h"

#include <gtest/gtest.h>

#include "app/DeviceStatus.h"
#include "support/Files.h"

namespace tolvanix::test {
namespace {

TEST(DriverUpdate, NoHardwareId_IsADeviceStatus) {
  const CurrentTempDir dir;
  writeFile(dir / "a.inf", infFile({"PCI\\VEN_1DE4"}));
  EXPECT_EQ(DriverUpdate(nullptr, nullptr, 0), kDeviceNullHardwareId);
  EXPECT_EQ(Win2kInstall("a.inf", nullptr, 0), kDeviceNoIdForInstall);
  EXPECT_EQ(Win2kInstall("none.inf", nullptr, 0), kDeviceInfNotOpened);
}

}  // namespace
}  // namespace tolvanix::test
