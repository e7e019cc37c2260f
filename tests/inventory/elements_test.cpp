#include <gtest/gtest.h>

#include <map>
#include <utility>

#include "inventory/SPOSInfo.h"
#include "inventory/SPXMLData.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(SPXMLDevice, WritesWhatItRead) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {uR"(<Device device="5" vendorID="1" deviceID="2" subDeviceID="3" subVendorID="4" bus="x" function="6" enum="7" componentID="C" display="d">)"
       uR"(<Validation type="soft"/><Application display="a"/><SPStatus result="a"/><SPStatus result="b"/></Device>)",
       uR"(<Device componentID="C"  vendorID="1"  deviceID="2"  subDeviceID="3"  subVendorID="4"  device="5"  function="6"  enum="7"  display="d" >)"
       uR"(<Application display="a" ></Application><Validation type="soft" ></Validation><SPStatus result="b" ></SPStatus></Device>)"},
      // Without one of the identifiers, neither the others nor the place.
      {uR"(<Device deviceID="2" subDeviceID="3" subVendorID="4" bus="5"/>)", u"<Device></Device>"},
      {uR"(<Device vendorID="1" subDeviceID="3" subVendorID="4" bus="5"/>)", u"<Device></Device>"},
      {uR"(<Device vendorID="1" deviceID="2" subVendorID="4" bus="5"/>)", u"<Device></Device>"},
      {uR"(<Device vendorID="1" deviceID="2" subDeviceID="3" bus="5"/>)", u"<Device></Device>"},
  };
  for (const auto& [text, written] : rows) {
    EXPECT_TRUE(SPXMLDevice(text).generateXML() == SPUString(written));
  }
}

TEST(SPXMLApplication, PackageVersion_IsTheLastPackagesAndFillsAMissingVersion) {
  const SPXMLApplication read(
      uR"(<Application display="d"><Package version="A04"/><Package version="A05"/><Package/></Application>)");
  EXPECT_TRUE(
      read.generateXML() ==
      SPUString(
          uR"(<Application version="A04"  display="d" ><Package version="A05" ></Package></Application>)"));
  const SPXMLApplication made(SPUString(u"d"), SPString("c"), SPString("s"), SPString("v"));
  EXPECT_TRUE(
      made.generateXML() ==
      SPUString(
          uR"(<Application componentType="c"  subComponentID="s"  version="v"  display="d" ></Application>)"));
}

TEST(SPXMLData, Reading_TakesDevicesAtAnyDepthAndTheLastStatus) {
  const SPXMLData data(
      uR"(<R lang="de"><System systemID="1A" systemModel="M"/><x><Device display="1"/></x>)"
      uR"(<Validation type="hard"/><SPStatus result="a"/><SPStatus result="b"/></R>)");
  EXPECT_EQ(data.getDevices().size(), 1U);
  const SPUString text = data.generateXML();
  EXPECT_TRUE(
      text.starts_with(u"<R lang=\"de\" ><System systemID=\"1A\"  systemModel=\"M\" ></System>"));
  EXPECT_EQ(text.find(u"Validation"), SPUString::npos) << "there is a device";
  EXPECT_NE(text.find(u"<SPStatus result=\"b\" >"), SPUString::npos);
  const SPUString other =
      SPXMLData(u"<R><System systemID=\"0\"/><Validation type=\"hard\"/></R>").generateXML();
  EXPECT_TRUE(other.starts_with(u"<R><OperatingSystem "));
  EXPECT_NE(other.find(u"type=\"hard\""), SPUString::npos);
}

TEST(SPXMLOSInfo, ArchitectureIsTheDocumentsOrNotAvailable) {
  SPXMLOSInfo system;
  EXPECT_TRUE(system.getArch() == SPUString(u"x64"));
  const SPUString written = system.generateXML();
  system.parseXML(uR"(<OperatingSystem osVendor="Other" majorVersion="99"/>)");
  EXPECT_TRUE(system.getArch() == SPUString(u"na"));
  system.parseXML(uR"(<OperatingSystem osArch="ia64"/>)");
  EXPECT_TRUE(system.getArch() == SPUString(u"ia64"));
  EXPECT_TRUE(system.generateXML() == written) << "the computer is written, not the document";
}

TEST(SPOSInfo, Reported62_IsCorrectedToWhatVerifies) {
  static std::uint32_t system = 0;
  const auto verify = [](std::uint32_t asked) {
    return asked == system ? std::uint32_t{ERROR_SUCCESS} : std::uint32_t{ERROR_OLD_WIN_VERSION};
  };
  for (const auto& [minor, corrected] :
       std::map<std::uint32_t, std::uint32_t>{{2, 2}, {3, 3}, {5, 5}, {6, 2}}) {
    system = minor;
    EXPECT_EQ(minorVersionOfReported62(verify), corrected);
  }
  const auto fails = [](std::uint32_t asked) { return asked == 2 ? 1150U : 87U; };
  EXPECT_EQ(minorVersionOfReported62(fails), 3U) << "another error ends the search there";
}

}  // namespace
}  // namespace tolvanix::test
