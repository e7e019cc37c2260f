#include <gtest/gtest.h>

#include <utility>

#include "inventory/SPOSInfo.h"
#include "inventory/SPXMLData.h"
#include "support/Patterns.h"
#include "text/Conversion.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(SPXMLDevice, WritesWhatItRead) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {uR"(<Device device="5" vendorID="1" deviceID="2" subDeviceID="3" subVendorID="4" bus="x" function="6" enum="7" componentID="C" display="d">)"
       uR"(<Validation type="soft"/><Application display="a"/><SPStatus result="a"/><SPStatus result="b"/></Device>)",
       R"(<Device componentID="C"  vendorID="1"  deviceID="2"  subDeviceID="3"  subVendorID="4"  device="5"  function="6"  enum="7"  display="d" >)"
       R"(<Application display="a" ></Application><Validation type="soft" ></Validation><SPStatus result="b" ></SPStatus></Device>)"},
      // Without one of the identifiers, neither the others nor the place.
      {uR"(<Device deviceID="2" subDeviceID="3" subVendorID="4" bus="5"/>)", "<Device></Device>"},
      {uR"(<Device vendorID="1" subDeviceID="3" subVendorID="4" bus="5"/>)", "<Device></Device>"},
      {uR"(<Device vendorID="1" deviceID="2" subVendorID="4" bus="5"/>)", "<Device></Device>"},
      {uR"(<Device vendorID="1" deviceID="2" subDeviceID="3" bus="5"/>)", "<Device></Device>"},
      // The version of the last package, and of the application's own the first.
      {uR"(<Device><Application display="d"><Package version="A04"/><Package version="A05"/><Package/></Application></Device>)",
       R"(<Device display="d" ><Application version="A04"  display="d" ><Package version="A05" ></Package></Application></Device>)"},
  };
  for (const auto& [text, written] : rows) {
    EXPECT_EQ(narrow(SPXMLDevice(text).generateXML()), written);
  }
  EXPECT_EQ(
      narrow(SPXMLApplication(SPUString(u"d"), SPString("c"), SPString("s"), SPString("v"))
                 .generateXML()),
      R"(<Application componentType="c"  subComponentID="s"  version="v"  display="d" ></Application>)");
}

TEST(SPXMLData, Reading_TakesDevicesAtAnyDepthAndTheLastStatus) {
  const auto rewritten = [](std::u16string_view text) {
    const std::string written = narrow(SPXMLData(text).generateXML());
    return replaced(written, "<OperatingSystem .*</OperatingSystem>", "<OS>");
  };
  EXPECT_EQ(
      rewritten(
          uR"(<R lang="de"><System systemID="1A" systemModel="M"/><x><Device display="1"/></x>)"
          uR"(<Validation type="hard"/><SPStatus result="a"/><SPStatus result="b"/></R>)"),
      R"(<R lang="de" ><System systemID="1A"  systemModel="M" ></System><OS>)"
      R"(<Device display="1" ></Device><SPStatus result="b" ></SPStatus></R>)");
  EXPECT_EQ(rewritten(u"<R><System systemID=\"0\"/><Validation type=\"hard\"/></R>"),
            "<R><OS><Validation type=\"hard\" ></Validation></R>")
      << "without a device";
}

TEST(SPXMLOSInfo, ArchitectureIsTheDocumentsOrNotAvailable) {
  SPXMLOSInfo system;
  EXPECT_EQ(narrow(system.getArch()), "x64");
  const SPUString written = system.generateXML();
  system.parseXML(uR"(<OperatingSystem osVendor="Other" majorVersion="99"/>)");
  EXPECT_EQ(narrow(system.getArch()), "na");
  system.parseXML(uR"(<OperatingSystem osArch="ia64"/>)");
  EXPECT_EQ(narrow(system.getArch()), "ia64");
  EXPECT_EQ(narrow(system.generateXML()), narrow(written)) << "the computer is written";
}

TEST(SPOSInfo, Reported62_IsCorrectedToWhatVerifies) {
  static std::uint32_t system = 0;
  const auto verify = [](std::uint32_t asked) {
    return asked == system ? std::uint32_t{ERROR_SUCCESS} : std::uint32_t{ERROR_OLD_WIN_VERSION};
  };
  const std::pair<std::uint32_t, std::uint32_t> rows[] = {{2, 2}, {3, 3}, {5, 5}, {6, 2}};
  for (const auto& [minor, corrected] : rows) {
    system = minor;
    EXPECT_EQ(minorVersionOfReported62(verify), corrected);
  }
  const auto fails = [](std::uint32_t asked) { return asked == 2 ? 1150U : 87U; };
  EXPECT_EQ(minorVersionOfReported62(fails), 3U) << "another error ends the search there";
}

}  // namespace
}  // namespace tolvanix::test
