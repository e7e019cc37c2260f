// `-i` on the computers that registry exports describe.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

// Four devices as they usually are; then many that are not, of which the vendor 1DE5 is not wanted.
TEST(Inventory, PciDevices_AreInTheDocument) {
  for (const std::string name : {"four_devices", "odd_devices"}) {
    std::string expected = readText(fixture("computers/" + name + ".xml"));
    std::erase(expected, '\n');
    const Computer computer(fixture("computers/" + name + ".reg"));
    const Package package;
    package.add("DriverConfiguration.ini", "[Not wanted]\nVendorID=1de5\n");
    const ProgramResult printed = package.run({"-i"}, computer);
    EXPECT_EQ(printed.exitCode, 0);
    EXPECT_EQ(Computer::withoutOwnDevice(printed.output), expected);
    EXPECT_EQ(package.run({"-i", "-o", "out.xml"}, computer).output, "");
    EXPECT_EQ(Computer::withoutOwnDevice(readText(package / "out.xml")), expected);
  }
}

TEST(Inventory, Trace_HasTheComputersSystem) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const std::string trace = Package().run({"-i", "-d=4"}, computer).output;
  EXPECT_NE(trace.find(R"(majorVersion="10"  minorVersion="0")"), std::string::npos);
}

}  // namespace
}  // namespace tolvanix::test
