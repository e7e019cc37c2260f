#include "install/CDevInfoSet.h"

#include <gtest/gtest.h>

#include "support/ScopedRegistry.h"

namespace tolvanix {
namespace {

using test::deviceKey;
using test::listOf;
using test::ScopedRegistry;
using test::textOf;

TEST(CDevInfoSetTest, FindExistingDevice_WantsAWholeIdInAnyCase) {
  const ScopedRegistry registry({
      // In the order of enumeration on every platform: one without IDs comes first.
      deviceKey("PCI\\VEN_1DE4&DEV_0A00\\1", {textOf("DeviceDesc", "no hardware IDs")}),
      deviceKey("PCI\\VEN_1DE4&DEV_0A01\\1",
                {listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_0A01&SUBSYS_00011DE4&REV_02",
                                       "PCI\\VEN_1DE4&DEV_0A01&SUBSYS_00011DE4"})}),
      deviceKey("PCI\\VEN_1DE4&DEV_0A02\\1",
                {listOf("HardwareID", {"PCI\\VEN_1DE4&DEV_0A02&SUBSYS_00021DE4"})}),
  });
  const struct {
    const char* id;
    int result;
  } rows[] = {
      {"PCI\\VEN_1DE4&DEV_0A01&SUBSYS_00011DE4", CDevInfoSet::kFound},
      {"pci\\ven_1de4&dev_0a02&subsys_00021de4", CDevInfoSet::kFound},
      {"PCI\\VEN_1DE4&DEV_0A02", CDevInfoSet::kNotFound},
      {"PCI\\VEN_1DE4&DEV_0A02&SUBSYS_00021DE4&REV_01", CDevInfoSet::kNotFound},
      {"no hardware IDs", CDevInfoSet::kNotFound},
      {"", CDevInfoSet::kNotFound},
  };
  for (const auto& row : rows) {
    CDevInfoSet set;
    EXPECT_EQ(set.FindExistingDevice(row.id), row.result) << row.id;
  }
}

TEST(CDevInfoSetTest, IsOSArchitectureWow64_IsFalseFor64Bits) {
  EXPECT_FALSE(CDevInfoSet::IsOSArchitectureWow64());
}

}  // namespace
}  // namespace tolvanix
