#include "install/ExecCmd.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "support/Files.h"
#include "support/Helper.h"

namespace tolvanix {
namespace {

using test::placeHelper;
using test::readFile;
using test::ScopedCurrentDirectory;
using test::TempDir;
using test::writeFile;

class ExecCmdTest : public ::testing::Test {
 protected:
  // Runs a helper that takes these steps, and checks that standard output is put back.
  int exec(const std::string& steps, int timeLimit = 20, const char* program = "helper.exe") {
    placeHelper(dir / program, steps);
    return execProgram(program, timeLimit);
  }
  int execProgram(const char* program, int timeLimit = 20) {
    const HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
    const std::string commandLine = (dir / program).string();
    const int result = ExecCmd(workingDirectory.c_str(), commandLine.c_str(), 0, output,
                               sizeof output, exitCode, timeLimit);
    EXPECT_EQ(GetStdHandle(STD_OUTPUT_HANDLE), before);
    return result;
  }

  TempDir dir;
  ScopedCurrentDirectory inDir{dir.path()};
  std::string workingDirectory = dir.path().string();
  char output[64] = "untouched";
  DWORD exitCode = 4711;
};

TEST_F(ExecCmdTest, ExitCode_IsHandedOut) {
  for (const DWORD code : {0U, 1U, 2U, 77U}) {
    EXPECT_EQ(exec("exit " + std::to_string(code)), kExecEnded);
    EXPECT_EQ(exitCode, code);
  }
}

TEST_F(ExecCmdTest, Output_IsCapturedAndNotPassedOn) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(exec("print 10"), kExecEnded);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_STREQ(output, "xxxxxxxxxx");
}

TEST_F(ExecCmdTest, OutputLongerThanTheBuffer_LeavesTheLastPiece) {
  EXPECT_EQ(exec("print 66"), kExecEnded);
  EXPECT_STREQ(output, "xxx");
}

TEST_F(ExecCmdTest, OutputLongerThanThePipe_BlocksUntilTheTimeIsOut) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(exec("print 1000000", 1), kExecTimedOut);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
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

TEST_F(ExecCmdTest, NoTimeLimit_WaitsForTheChild) {
  EXPECT_EQ(exec("sleep 50\nexit 3", 0), kExecEnded);
  EXPECT_EQ(exitCode, 3U);
  EXPECT_EQ(exec("sleep 50\nexit 4", -1), kExecEnded);
  EXPECT_EQ(exitCode, 4U);
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
  placeHelper(dir / "text.exe", "");  // for its permissions
  writeFile(dir / "text.exe", "this is no program\n");
  EXPECT_EQ(execProgram("text.exe"), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_BAD_EXE_FORMAT);
  workingDirectory = (dir / "none").string();
  EXPECT_EQ(exec(""), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_DIRECTORY);
}

TEST_F(ExecCmdTest, WorkingDirectoryOf256Characters_Fails) {
  workingDirectory.append(256 - workingDirectory.size(), '/');
  EXPECT_EQ(exec(""), kExecFailed);
  EXPECT_EQ(exitCode, ERROR_FILENAME_EXCED_RANGE);
  workingDirectory.pop_back();
  EXPECT_EQ(exec(""), kExecEnded);
}

}  // namespace
}  // namespace tolvanix
