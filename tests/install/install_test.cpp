#include <gtest/gtest.h>

#include <string>

#include "install/CInf.h"
#include "install/DeviceStatus.h"
#include "install/DevHelper.h"
#include "install/DriverUpdate.h"
#include "support/Files.h"
#include "support/Trace.h"

namespace tolvanix::test {
namespace {

constexpr char kVersion[] = "[Version]\nSignature=\"$Windows NT$\"\nClass=Display\n";

TEST(CInf, Open_FindsPathClassAndGuid) {
  const CurrentTempDir folder;
  for (const char* const guid : {"", "ClassGuid={4d36e968-e325-11ce-bfc1-08002be10318}\n"}) {
    writeFile(folder / "test.inf", std::string(kVersion) + guid);
    for (const char* const name : {"test.inf", "\"test.inf\"", ".\\test.inf"}) {
      CInf inf;
      EXPECT_EQ(inf.Open(name, 0), ERROR_SUCCESS) << name;
      EXPECT_EQ(inf.getPath(), SPString(".\\test.inf"));
      EXPECT_EQ(inf.getClassName(), SPString("Display"));
      EXPECT_EQ(inf.getClassGuid().Data1, 0x4d36e968U);
    }
  }
}

TEST(CInf, Open_TakesAClassOf63Characters) {
  const CurrentTempDir folder;
  const std::string name(63, 'C');
  writeFile(folder / "test.inf", "[Version]\nSignature=\"$Windows NT$\"\nClass=" + name + '\n');
  CInf inf;
  EXPECT_EQ(inf.Open("test.inf", 0), ERROR_SUCCESS);
  EXPECT_EQ(inf.getClassName(), SPString(name));
}

TEST(CInf, Open_UnusableFile_GivesAnErrorAndTracesIt) {
  const CurrentTempDir folder;
  const auto open = [](const char* name) {
    DWORD error = ERROR_SUCCESS;
    const std::string trace = traceOf([&] { error = CInf().Open(name, 0); });
    EXPECT_TRUE(trace.starts_with("\nCInf::Open, line = ")) << trace;
    const auto code = ", error code = " + std::to_string(static_cast<int>(error)) + ',';
    EXPECT_NE(trace.find(code), std::string::npos) << trace;
    return error;
  };
  EXPECT_EQ(open("none.inf"), ERROR_FILE_NOT_FOUND);
  writeFile(folder / "test.inf", "[Version]\n");
  EXPECT_EQ(open("test.inf"), ERROR_WRONG_INF_STYLE);
  writeFile(folder / "test.inf", "[Version]\nSignature=\"$Windows NT$\"\n");
  EXPECT_NE(open("test.inf"), ERROR_SUCCESS);  // no class
}

TEST(CInf, Search_TracesEverySectionAndLine) {
  const CurrentTempDir folder;
  const auto trace = [&folder](const std::string& text) {
    writeFile(folder / "test.inf", kVersion + text);
    CInf inf;
    inf.Open("test.inf", 0);
    inf.setHardwareId("pci\\3");
    return traceOf([&inf] { inf.EnumManufacturers(); });
  };
  EXPECT_EQ(
      trace("[Manufacturer]\nn=N\n%m%=M,NT,None\n[M.NT]\na=i,PCI\\1,PCI\\11\n%c%=k,USB\\2,PCI\\3\n"
            "[Strings]\nm=Maker\nc=100% C\n"),
      "EnumManufacturers->EnumDevices for mfg 1, n:N.\n"
      "EnumDevices for model, N: no devices found.\n"
      "EnumManufacturers->EnumDevices for mfg 1, Maker:M.\n"
      "EnumDevices for model, M: no devices found.\n"
      "EnumManufacturers->EnumDevices for mfg 2, Maker:M.NT.\n"
      "EnumDevices for model, a:i\n"
      "Search for HwID pci\\3: not found.\n"
      "EnumDevices for model, 100% C:k\n"
      "Search for HwID pci\\3: found. i = 1\n");
  const std::string error = trace("");  // the platform's, which it may have no text for
  EXPECT_TRUE(error.starts_with("\nCInf::EnumManufacturers, line = ")) << error;
  EXPECT_NE(error.find(", error code = -5368706"), std::string::npos) << error;
}

TEST(PrintError, TextWithAnInsert_IsTracedAsItIs) {
  const CurrentTempDir folder;
  const std::string trace = traceOf([] { PrintError(ERROR_BAD_EXE_FORMAT, "place", 7); });
  const std::string start = "\nplace, line = 7, error code = 193, error msg = ";
  EXPECT_TRUE(trace.starts_with(start)) << trace;
  EXPECT_GT(trace.size(), start.size() + 2) << "the system has a text";
}

// What no command line can ask for; the rest stands in the whole runs of -uhid.
TEST(DriverUpdate, NoHardwareId_IsADeviceStatus) {
  const CurrentTempDir dir;
  writeFile(dir / "a.inf", infFile({"PCI\\VEN_1DE4"}));
  EXPECT_EQ(traceOf([] { EXPECT_EQ(DriverUpdate(nullptr, nullptr, 0), kDeviceNullHardwareId); }),
            "");
  char id[] = "PCI\\VEN_1DE4";
  EXPECT_TRUE(traceOf([&id] {
                EXPECT_EQ(DriverUpdate(id, "none.inf", 0), kDeviceNamedInfNotFound);
              }).ends_with("DriverUpdate: INF file was not found = none.inf\n"));
  EXPECT_TRUE(traceOf([] {
                Win2kInstall("none.inf", "", 0);
              }).ends_with("\nWin2kInstall: Error: Unable to open INF file: none.inf\n"));
  EXPECT_EQ(traceOf([] { EXPECT_EQ(Win2kInstall("a.inf", nullptr, 0), kDeviceNoIdForInstall); }),
            "Win2kInstall: Entered function.\nWin2kInstall: Error: Hardware ID pointer is NULL.\n");
}

}  // namespace
}  // namespace tolvanix::test
