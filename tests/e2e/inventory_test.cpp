// `-i` on the computers that registry exports describe.
#include <gtest/gtest.h>

#include "support/Package.h"
#include "support/Patterns.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {
namespace {

// Four devices as they usually are, and many that are not, with a filter.
TEST(Inventory, PciDevices_AreInTheDocument) {
  for (const std::string name : {"four_devices", "odd_devices", "indirect_texts"}) {
    const Computer computer(fixture("computers/" + name + ".reg"));
    const Package package;
    const auto filter = fixture("computers/" + name + ".ini");
    if (exists(filter)) package.add("DriverConfiguration.ini", readFile(filter));
    const ProgramResult printed = package.run({"-i"});
    EXPECT_EQ(printed.exitCode, 0);
    // Every Wine has a display adapter of its own.
    const std::string ofWine = R"(<Device vendorID="0000"  deviceID="0000".*?</Device>)";
    EXPECT_EQ(replaced(printed.output, ofWine, ""), fixtureDocument("computers/" + name + ".xml"));
  }
}

// With a filter, which leaves out the display adapter of Wine as well. What Wine traces of that is
// no matter of the comparison, hence a run that is not recorded.
TEST(Inventory, Trace_TellsEachStep) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const Package package;
  package.add("DriverConfiguration.ini", "[Wine]\nVendorID=0000\n[Left out]\nVendorID=1DE4\n");
  const ProgramResult result = runProgram(package.program(), {"-i", "-d=4", "-e", "trace.log"});
  EXPECT_EQ(result.exitCode, 0);
  const std::string counts = "(4 PCI devices, 1|5 PCI devices, 2) left out by DriverConf";
  EXPECT_TRUE(isMatch(package.explained(result), counts)) << "the second is Wine's";
  const std::string ofWine = R"(PCI\\VEN_0000.*\n(?:KivWrapper.*\n)*)";
  EXPECT_EQ(replaced(readText(package / "trace.log"), ofWine, ""),
            readText(fixture("traces/inventory.txt")));
}

}  // namespace
}  // namespace tolvanix::test
