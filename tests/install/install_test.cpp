#include <gtest/gtest.h>

#include <string>

#include "install/CInf.h"
#include "install/DevHelper.h"
#include "install/DeviceStatus.h"
#include "install/DriverUpdate.h"
#include "support/Files.h"
#include "support/Trace.h"

namespace tolvanix::test {
namespace {

TEST(CInf, Open_FindsPathClassAndGuid) {
  const CurrentTempDir folder;
  const std::string longest(63, 'C');
  const struct {
    std::string version;
    std::string className;
    DWORD guid;  // its first part
  } rows[] = {
      {"Class=Display\n", "Display", 0x4d36e968U},
      {"Class=Display\nClassGuid={4d36e97d-e325-11ce-bfc1-08002be10318}\n", "Display", 0x4d36e97dU},
      {"Class=" + longest + '\n', longest, 0},
  };
  for (const auto& row : rows) {
    writeFile(folder / "test.inf", "[Version]\nSignature=\"$Windows NT$\"\n" + row.version);
    for (const char* const name : {"test.inf", "\"test.inf\"", ".\\test.inf"}) {
      CInf inf;
      EXPECT_EQ(inf.Open(name, 0), ERROR_SUCCESS) << name;
      EXPECT_EQ(inf.getPath(), SPString(".\\test.inf"));
      EXPECT_EQ(inf.getClassName(), SPString(row.className));
      EXPECT_EQ(inf.getClassGuid().Data1, row.guid);
    }
  }
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
  writeFile(folder / "test.inf", "[Version]\nSignature=\"$Windows NT$\"\nClass=Display\n");
  CInf inf;
  inf.Open("test.inf", 0);
  const std::string error = traceOf([&inf] { inf.EnumManufacturers(); });
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

// What no command line can ask for; the rest is in the whole runs of -uhid.
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
