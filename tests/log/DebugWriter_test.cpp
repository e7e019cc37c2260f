#include "log/DebugWriter.h"

#include <gtest/gtest.h>

#include "support/Files.h"
#include "support/Trace.h"

namespace tolvanix::test {
namespace {

// The command line asks for the targets -1, 1 and 2 alone.
TEST(DebugWriter, Target_IsASetOfOutputs) {
  const CurrentTempDir folder;
  const struct {
    int target;
    const char* toFile;
    const char* toOutput;
    const char* toError;
  } rows[] = {
      {-1, "", "", ""},   {0, "abc", "", ""},    {1, "abc", "", ""},    {2, "", "abc", ""},
      {4, "", "", "abc"}, {5, "abc", "", "abc"}, {6, "", "abc", "abc"}, {7, "abc", "abc", "abc"},
  };
  for (const auto& row : rows) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    DebugWriter().initialize(0, row.target, "debug.log");
    const int written = debugTrace("%sc", "ab");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), row.toError) << row.target;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), row.toOutput) << row.target;
    EXPECT_EQ(written, row.target < 0 ? 0 : 3);
    const std::string file = readText("debug.log");
    EXPECT_EQ(file.substr(file.find("debug.log\n") + 10), row.toFile) << row.target;
  }
  EXPECT_EQ(traceOf([] { DebugWriter().dumpXML(nullptr, "None"); }), "");
  DebugWriter().initialize(0, kTargetFile | kTargetStandardOutput, "none/debug.log");
  testing::internal::CaptureStdout();
  EXPECT_EQ(debugTrace("abc"), -1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "nothing goes elsewhere then";
  DebugWriter().initialize(0, kTargetNone, "");
}

}  // namespace
}  // namespace tolvanix::test
