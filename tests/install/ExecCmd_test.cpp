#include "install/ExecCmd.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/Files.h"
#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

class ExecCmdTest : public ::testing::Test {
 protected:
  // Runs a helper that takes these steps, and checks that standard output is put back as it was
  // and gets nothing.
  int exec(const std::string& steps, int timeLimit = 20) {
    placeHelper(dir / "helper.exe", steps);
    return execProgram("helper.exe", timeLimit);
  }
  int execProgram(const char* program, int timeLimit = 20) {
    const std::string commandLine = (dir / program).string();
    testing::internal::CaptureStdout();
    const HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
    EXPECT_TRUE(SetHandleInformation(before, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT));
    const int result = ExecCmd(workingDirectory.c_str(), commandLine.c_str(), 0, output,
                               sizeof output, exitCode, timeLimit);
    const HANDLE after = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD flags = 0;
    GetHandleInformation(before, &flags);  // the end of the capture closes it
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(after, before);
    EXPECT_EQ(flags, HANDLE_FLAG_INHERIT);
    return result;
  }

  CurrentTempDir dir;
  std::string workingDirectory = dir.path().string();
  char output[64] = "untouched";
  DWORD exitCode = 4711;
};

TEST_F(ExecCmdTest, Child_LeavesItsExitCodeAndTheLastPieceOfItsOutput) {
  const struct {
    const char* steps;
    int timeLimit;  // seconds; without one below 1
    DWORD exitCode;
    const char* output;
  } rows[] = {
      {"exit 0", 20, 0, "untouched"},          {"exit 77", 20, 77, "untouched"},
      {"print 10", 20, 0, "xxxxxxxxxx"},       {"print 66\nexit 1", 20, 1, "xxx"},
      {"sleep 50\nexit 3", 0, 3, "untouched"}, {"sleep 50\nexit 4", -1, 4, "untouched"},
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
  EXPECT_TRUE(releaseHelper(dir / "helper.exe", "go"));
}

TEST_F(ExecCmdTest, PipeKeptOpenByAGrandchild_IsNotWaitedFor) {
  EXPECT_EQ(exec("print 5\nlinger go\nexit 6"), kExecEnded);
  EXPECT_EQ(exitCode, 6U);
  EXPECT_STREQ(output, "xxxxx");
  EXPECT_TRUE(releaseHelper(dir / "helper.exe", "go"));
}

TEST_F(ExecCmdTest, StandardErrorThatIsStandardOutputToo_StaysTheChilds) {
  placeHelper(dir / "helper.exe", "complain 5");
  HANDLE readHandle = nullptr;
  HANDLE writeHandle = nullptr;
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  ASSERT_TRUE(CreatePipe(&readHandle, &writeHandle, &inheritable, 0));
  const KernelObjectOwner readEnd(readHandle);
  const KernelObjectOwner writeEnd(writeHandle);
  const HANDLE standardOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  const HANDLE standardError = GetStdHandle(STD_ERROR_HANDLE);
  SetStdHandle(STD_OUTPUT_HANDLE, writeHandle);
  SetStdHandle(STD_ERROR_HANDLE, writeHandle);
  const int result = ExecCmd(nullptr, (dir / "helper.exe").string().c_str(), 0, output,
                             sizeof output, exitCode, 20);
  SetStdHandle(STD_OUTPUT_HANDLE, standardOutput);
  SetStdHandle(STD_ERROR_HANDLE, standardError);
  EXPECT_EQ(result, kExecEnded);
  DWORD available = 0;
  EXPECT_TRUE(PeekNamedPipe(readHandle, nullptr, 0, nullptr, &available, nullptr));
  EXPECT_EQ(available, 5U);
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

TEST_F(ExecCmdTest, ProgramThatCannotStart_GivesThePlatformsError) {
  EXPECT_EQ(execProgram("none.exe"), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace tolvanix::test
