#include "install/ExecCmd.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <string>

#include "support/Files.h"

namespace tolvanix::test {
namespace {

class ExecCmdTest : public ::testing::Test {
 protected:
  // Runs a helper that takes these steps, and checks that standard output is put back and gets
  // nothing.
  int exec(const std::string& steps, int timeLimit = 20) {
    placeHelper(dir / "helper.exe", steps);
    return execProgram("helper.exe", timeLimit);
  }
  int execProgram(const char* program, int timeLimit = 20) {
    const std::string commandLine = (dir / program).string();
    testing::internal::CaptureStdout();
    const HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
    const int result = ExecCmd(workingDirectory.c_str(), commandLine.c_str(), 0, output,
                               sizeof output, exitCode, timeLimit);
    EXPECT_EQ(GetStdHandle(STD_OUTPUT_HANDLE), before);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
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
  EXPECT_EQ(exec("sleep 1500\nrecord ended.txt", 1), kExecTimedOut);
  const auto ended = dir / "ended.txt";
  EXPECT_FALSE(std::filesystem::exists(ended));
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!std::filesystem::exists(ended) && std::chrono::steady_clock::now() < limit) {
  }
  EXPECT_TRUE(std::filesystem::exists(ended));
}

TEST_F(ExecCmdTest, PipeKeptOpenByAGrandchild_IsNotWaitedFor) {
  const auto started = std::chrono::steady_clock::now();
  EXPECT_EQ(exec("print 5\nlinger 4000\nexit 6"), kExecEnded);
  EXPECT_EQ(exitCode, 6U);
  EXPECT_STREQ(output, "xxxxx");
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(3));
}

TEST_F(ExecCmdTest, EmptyWorkingDirectory_IsTheCurrentOne) {
  workingDirectory = "";
  EXPECT_EQ(exec("record out.txt"), kExecEnded);
  EXPECT_EQ(readFile(dir / "out.txt"), dir.path().string() + '\n');
}

TEST_F(ExecCmdTest, ProgramThatCannotStart_GivesThePlatformsError) {
  EXPECT_EQ(execProgram("none.exe"), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_FILE_NOT_FOUND);
}

TEST_F(ExecCmdTest, WorkingDirectoryOf256Characters_Fails) {
  workingDirectory.append(256 - workingDirectory.size(), '/');
  EXPECT_EQ(exec(""), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_FILENAME_EXCED_RANGE);
  workingDirectory.pop_back();
  EXPECT_EQ(exec(""), kExecEnded);
}

}  // namespace
}  // namespace tolvanix::test
