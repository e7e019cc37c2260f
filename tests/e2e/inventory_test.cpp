// `-i` on the computers that registry exports describe.
#include <gtest/gtest.h>

#include "support/Package.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

// Four devices as they usually are, and many that are not, with a filter.
TEST(Inventory, PciDevices_AreInTheDocument) {
  for (const std::string name : {"computers/four_devices", "computers/odd_devices"}) {
    const std::string expected = fixtureDocument(name + ".xml");
    const Computer computer(fixture(name + ".reg"));
    const Package package;
    if (name.ends_with("odd_devices")) {
      package.addCopy("DriverConfiguration.ini", fixture(name + ".ini"));
    }
    const ProgramResult printed = package.run({"-i"}, computer);
    EXPECT_EQ(printed.exitCode, 0);
    EXPECT_EQ(Computer::withoutOwnDevice(printed.output), expected);
    EXPECT_EQ(package.run({"-i", "-o", "out.xml"}, computer).output, "");
    EXPECT_EQ(Computer::withoutOwnDevice(readText(package / "out.xml")), expected);
  }
}

}  // namespace
}  // namespace tolvanix::test
