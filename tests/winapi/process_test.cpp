// Processes and pipes, to the documented behaviour: the same tests judge the system's own
// functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "Child.h"
#include "support/Files.h"

namespace tolvanix::test {
namespace {

class ProcessTest : public ::testing::Test {
 protected:
  std::string native(const char* name) const { return (dir / name).string(); }

  CurrentTempDir dir;
};

TEST_F(ProcessTest, Program_IsTheShortestTextBeforeABlankThatNamesAFile) {
  placeHelper(dir / "plain.exe", "exit 10");
  placeHelper(dir / "with blank/in name.exe", "exit 11");
  placeHelper(dir / "short.exe", "exit 12");
  placeHelper(dir / "short path/tool.exe", "exit 13");
  const std::pair<std::string, DWORD> rows[] = {
      {native("plain.exe") + " more words", 10},
      {'"' + native("plain.exe") + "\" more", 10},
      {native("plain"), 10},
      {native("with blank/in name") + " more", 11},
      {'"' + native("with blank/in name.exe") + '"', 11},
      {native("short path/tool.exe"), 12},
      {'"' + native("short path/tool.exe") + '"', 13},
  };
  for (const auto& [commandLine, exitCode] : rows) {
    EXPECT_EQ(run(commandLine), exitCode) << commandLine;
  }
}

TEST_F(ProcessTest, Arguments_AreSplitAsTheCRuntimeDoes) {
  placeHelper(dir / "helper.exe", "record out.txt");
  ASSERT_EQ(run(native("helper.exe") + R"( plain  "with blank" "" a"b c"d \\srv\x "end\\" q\"q)"
                                       R"( \\\"y "PCI\VEN_1DE4&DEV_1502" "C:\a b\net.inf" "x""y")"),
            0U);
  const std::string expected =
      "plain\nwith blank\n\nab cd\n\\\\srv\\x\nend\\\nq\"q\n\\\"y\n"
      "PCI\\VEN_1DE4&DEV_1502\nC:\\a b\\net.inf\nx\"y\n";
  EXPECT_EQ(readFile(dir / "out.txt").substr(0, expected.size()), expected);
}

TEST_F(ProcessTest, Start_Failures) {
  for (const char* const name : {"helper.exe", "text.exe", "empty.exe"}) {
    placeHelper(dir / name, "");  // for its permissions
  }
  writeFile(dir / "text.exe", "this is no program\n");
  writeFile(dir / "empty.exe", "");
  const struct {
    const char* program;
    const char* directory;
    DWORD error;
  } rows[] = {
      {"none.exe", nullptr, ERROR_FILE_NOT_FOUND},
      {"text.exe", nullptr, ERROR_BAD_EXE_FORMAT},
      {"empty.exe", nullptr, ERROR_BAD_EXE_FORMAT},
      {"helper.exe", "no such directory", ERROR_DIRECTORY},
      {"helper.exe", "text.exe", ERROR_DIRECTORY},
  };
  for (const auto& row : rows) {
    EXPECT_FALSE(run(native(row.program), row.directory)) << row.program;
    EXPECT_EQ(GetLastError(), row.error) << row.program;
  }
}

TEST_F(ProcessTest, Pipe_TellsWhatIsThereAndBreaksAtTheEnd) {
  HANDLE readHandle = nullptr;
  HANDLE writeHandle = nullptr;
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  ASSERT_TRUE(CreatePipe(&readHandle, &writeHandle, &inheritable, 0));
  const KernelObjectOwner readEnd(readHandle);
  KernelObjectOwner writeEnd(writeHandle);
  const HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
  ASSERT_TRUE(SetStdHandle(STD_OUTPUT_HANDLE, writeHandle));
  placeHelper(dir / "helper.exe", "print 1000");
  EXPECT_EQ(run(native("helper.exe")), 0U);
  ASSERT_TRUE(SetHandleInformation(writeHandle, HANDLE_FLAG_INHERIT, 0));
  EXPECT_TRUE(run(native("helper.exe"))) << "and what it prints goes nowhere";
  ASSERT_TRUE(SetStdHandle(STD_OUTPUT_HANDLE, before));
  writeEnd.reset();
  DWORD available = 0;
  const auto peek = [&] {
    return PeekNamedPipe(readHandle, nullptr, 0, nullptr, &available, nullptr);
  };
  DWORD count = 0;
  char text[600];
  for (const DWORD expected : {1000U, 400U}) {
    ASSERT_TRUE(peek());
    EXPECT_EQ(available, expected);
    ASSERT_TRUE(ReadFile(readHandle, text, sizeof text, &count, nullptr));
    EXPECT_EQ(count, std::min<DWORD>(expected, sizeof text));
  }
  EXPECT_FALSE(ReadFile(readHandle, text, sizeof text, &count, nullptr));
  EXPECT_EQ(GetLastError(), ERROR_BROKEN_PIPE);
  EXPECT_FALSE(peek());
  EXPECT_EQ(GetLastError(), ERROR_BROKEN_PIPE);
  EXPECT_EQ(GetStdHandle(7), INVALID_HANDLE_VALUE);
  EXPECT_FALSE(CloseHandle(nullptr));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

}  // namespace
}  // namespace tolvanix::test
