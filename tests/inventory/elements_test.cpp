#include <gtest/gtest.h>

#include <map>

#include "inventory/SPOSInfo.h"
#include "inventory/SPXMLData.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(SPXMLDevice, WithoutAnIdentifier_NoNumberIsWritten) {
  const SPXMLDevice device(
      uR"(<Device deviceID="0DF8" subDeviceID="1" subVendorID="2" bus="1" componentID="C" display="d"/>)");
  EXPECT_TRUE(device.generateXML() ==
              SPUString(uR"(<Device componentID="C"  display="d" ></Device>)"));
}

TEST(SPXMLApplication, PackageVersion_IsTheLastPackagesAndFillsAMissingVersion) {
  const SPXMLApplication application(
      uR"(<Application display="d"><Package version="A04"/><Package version="A05"/></Application>)");
  EXPECT_TRUE(
      application.generateXML() ==
      SPUString(
          uR"(<Application version="A04"  display="d" ><Package version="A05" ></Package></Application>)"));
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
  EXPECT_NE(SPXMLData(u"<R><Validation type=\"hard\"/></R>").generateXML().find(u"type=\"hard\""),
            SPUString::npos);
}

TEST(SPXMLOSInfo, ReadingADocumentWithoutArchitecture_SaysNotAvailable) {
  SPXMLOSInfo system;
  EXPECT_TRUE(system.getArch() == SPUString(u"x64"));
  const SPUString written = system.generateXML();
  system.parseXML(uR"(<OperatingSystem osVendor="Other" majorVersion="99"/>)");
  EXPECT_TRUE(system.getArch() == SPUString(u"na"));
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
