#include <cstring>

#include "install/CInf.h"
#include "install/DevHelper.h"
#include "install/DeviceStatus.h"
#include "install/DriverUpdate.h"
#include "install/ExecCmd.h"
#include "support/Files.h"
#include "support/Matchers.h"
#include "support/Trace.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

class ExecCmdTest : public ::testing::Test {
 protected:
  // Runs a helper that takes these steps, and checks that standard output is put back as it was
  // and gets nothing.
  int exec(const std::string& steps, int timeLimit = 20) {
    placeHelper(helper, steps);
    testing::internal::CaptureStdout();
    const HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
    EXPECT_TRUE(SetHandleInformation(before, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT));
    const HANDLE standardError = GetStdHandle(STD_ERROR_HANDLE);
    if (isErrorToo) SetStdHandle(STD_ERROR_HANDLE, before);
    const int result = ExecCmd(workingDirectory.c_str(), helper.string().c_str(), 0, output,
                               sizeof output, exitCode, timeLimit);
    SetStdHandle(STD_ERROR_HANDLE, standardError);
    const HANDLE after = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD flags = 0;
    GetHandleInformation(before, &flags);  // the end of the capture closes it
    EXPECT_EQ(testing::internal::GetCapturedStdout(), isErrorToo ? "xxxxx" : "");
    EXPECT_EQ(after, before);
    EXPECT_EQ(flags, HANDLE_FLAG_INHERIT);
    return result;
  }

  CurrentTempDir dir;
  const std::filesystem::path helper = dir / "helper.exe";
  std::string workingDirectory = dir.path().string();
  char output[64] = "untouched";
  DWORD exitCode = 4711;
  bool isErrorToo = false;  // whether standard output is standard error, too
};

TEST_F(ExecCmdTest, Child_LeavesItsExitCodeAndTheLastPieceOfItsOutput) {
  const struct {
    const char* steps;
    int timeLimit;  // seconds; without one below 1
    DWORD exitCode;
    const char* output;
  } rows[] = {
      {"exit 0", 20, 0, "untouched"},    {"exit 77", 20, 77, "untouched"},
      {"print 10", 20, 0, "xxxxxxxxxx"}, {"print 66\nexit 1", 20, 1, "xxx"},
      {"exit 3", 0, 3, "untouched"},     {"exit 4", -1, 4, "untouched"},
  };
  for (const auto& row : rows) {
    std::memcpy(output, "untouched", sizeof "untouched");
    EXPECT_EQ(exec(row.steps, row.timeLimit), kExecEnded);
    EXPECT_EQ(exitCode, row.exitCode) << row.steps;
    EXPECT_STREQ(output, row.output) << row.steps;
  }
}

TEST_F(ExecCmdTest, OutputLongerThanThePipe_BlocksUntilTheTimeIsOut) {
  EXPECT_EQ(exec("print 1000000", 1), kExecTimedOut);
  EXPECT_STREQ(output, "untouched");
  EXPECT_EQ(exitCode, 4711U);
}

TEST_F(ExecCmdTest, TimeLimit_LeavesTheChildRunning) {
  EXPECT_EQ(exec("wait go", 1), kExecTimedOut);
  EXPECT_TRUE(releaseHelper(helper, "go"));
}

TEST_F(ExecCmdTest, StandardErrorThatIsStandardOutputToo_StaysTheChilds) {
  isErrorToo = true;
  EXPECT_EQ(exec("complain 5"), kExecEnded);
}

TEST_F(ExecCmdTest, WorkingDirectory_MayBeEmptyOrUpTo255Characters) {
  workingDirectory.append(256 - workingDirectory.size(), '/');
  EXPECT_EQ(exec(""), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_FILENAME_EXCED_RANGE);
  workingDirectory.pop_back();
  EXPECT_EQ(exec(""), kExecEnded);
  workingDirectory = "";
  EXPECT_EQ(exec("record out.txt"), kExecEnded);
  EXPECT_EQ(readFile(dir / "out.txt"), dir.path().string() + '\n');
}

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
    EXPECT_THAT(trace, StartsWith("\nCInf::Open, line = "));
    const auto code = ", error code = " + std::to_string(static_cast<int>(error)) + ',';
    EXPECT_THAT(trace, HasSubstr(code));
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
  EXPECT_THAT(error, StartsWith("\nCInf::EnumManufacturers, line = "));
  EXPECT_THAT(error, HasSubstr(", error code = -5368706"));
}

TEST(PrintError, TextWithAnInsert_IsTracedAsItIs) {
  const CurrentTempDir folder;
  const std::string trace = traceOf([] { PrintError(ERROR_BAD_EXE_FORMAT, "place", 7); });
  const std::string start = "\nplace, line = 7, error code = 193, error msg = ";
  EXPECT_THAT(trace, StartsWith(start));
  EXPECT_GT(trace.size(), start.size() + 2) << "the system has a text";
}

// What no command line can ask for; the rest is in the whole runs of -uhid.
TEST(DriverUpdate, NoHardwareId_IsADeviceStatus) {
  const CurrentTempDir dir;
  writeFile(dir / "a.inf", infFile({"PCI\\VEN_1DE4"}));
  int status = 0;
  EXPECT_EQ(traceOf([&] { status = DriverUpdate(nullptr, nullptr, 0); }), "");
  EXPECT_EQ(status, kDeviceNullHardwareId);
  char id[] = "PCI\\VEN_1DE4";
  std::string trace = traceOf([&] { status = DriverUpdate(id, "none.inf", 0); });
  EXPECT_EQ(status, kDeviceNamedInfNotFound);
  EXPECT_THAT(trace, EndsWith("DriverUpdate: INF file was not found = none.inf\n"));
  trace = traceOf([&] { Win2kInstall("none.inf", "", 0); });
  EXPECT_THAT(trace, EndsWith("\nWin2kInstall: Error: Unable to open INF file: none.inf\n"));
  EXPECT_EQ(traceOf([&] { status = Win2kInstall("a.inf", nullptr, 0); }),
            "Win2kInstall: Entered function.\nWin2kInstall: Error: Hardware ID pointer is NULL.\n");
  EXPECT_EQ(status, kDeviceNoIdForInstall);
}

}  // namespace
}  // namespace tolvanix::test
