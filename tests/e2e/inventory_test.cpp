// `-i` on a computer that a registry export describes.
#include <gtest/gtest.h>

#include "support/Package.h"

namespace tolvanix::test {
namespace {

const std::string kDocument =
    R"(<?xml version="1.0" encoding="UTF-8"?><SVMInventory lang="en" >)"
    R"(<Device vendorID="8086"  deviceID="1502"  subDeviceID="0493"  subVendorID="1028"  bus="0000")"
    R"(  device="0025"  function="0000"  display="Ger)"
    "\xC3\xA4"
    R"(t &lt;1&gt; &amp; &quot;Netz&quot; Driver" ><Application componentType="DRVR")"
    R"(  version="12.15.22.6"  display="Ger)"
    "\xC3\xA4"
    R"(t &lt;1&gt; &amp; &quot;Netz&quot; Driver" ></Application></Device>)"
    R"(<Device vendorID="8086"  deviceID="1E03"  subDeviceID="0493"  subVendorID="1028"  bus="0000")"
    R"(  device="0031"  function="0002"  display="SATA AHCI Controller" >)"
    R"(<Application componentType="DRVR"  version="0"  display="SATA AHCI Controller Driver" >)"
    R"(</Application></Device>)"
    R"(<Device vendorID="8086"  deviceID="1E3A"  subDeviceID="0493"  subVendorID="1028"  bus="0000")"
    R"(  device="0000"  function="0000"  display="default" ><Application componentType="DRVR")"
    R"(  version="7.1.80.1214"  display="default Driver" ></Application></Device></SVMInventory>)";

TEST(Inventory, FourDevices_PciOnesAreInTheDocument) {
  const Computer computer(fixture("computers/four_devices.reg"));
  const Package package;
  const ProgramResult printed = package.run({"-i"}, computer);
  EXPECT_EQ(printed.exitCode, 0);
  EXPECT_EQ(Computer::withoutOwnDevice(printed.output), kDocument);

  const ProgramResult written = package.run({"-i", "-o", "out.xml"}, computer);
  EXPECT_EQ(written.exitCode, 0);
  EXPECT_EQ(written.output, "");
  EXPECT_EQ(Computer::withoutOwnDevice(readText(package / "out.xml")), kDocument);
}

TEST(Inventory, Trace_HasTheComputersSystem) {
  const Computer computer(fixture("computers/four_devices.reg"));
  EXPECT_NE(
      Package().run({"-i", "-d=4"}, computer).output.find(R"(majorVersion="10"  minorVersion="0")"),
      std::string::npos);
}

TEST(Inventory, ComputerGone_ItsDevicesAreGone) {
  { const Computer computer(fixture("computers/four_devices.reg")); }
  EXPECT_EQ(Package().run({"-i"}).output.find("SUBSYS_04931028"), std::string::npos);
}

}  // namespace
}  // namespace tolvanix::test
