// The sample helper program's exit codes for the errors of Windows.
#include <gtest/gtest.h>

#include <utility>

#include "helper/SystemError.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(HelperExitCode, SystemError_HasItsMeaningAndIsNeverASuccess) {
  const std::pair<std::uint32_t, ExitCode> rows[] = {
      {ERROR_FILE_NOT_FOUND, kInfUnusable},
      {ERROR_LINE_NOT_FOUND, kInfUnusable},
      {0xE000020B, kNoDevice},  // ERROR_NO_SUCH_DEVINST
      {ERROR_NO_MORE_ITEMS, kNotBetter},
      {740, kNoRights},      // ERROR_ELEVATION_REQUIRED
      {1459, kNeedsAnswer},  // ERROR_REQUIRES_INTERACTIVE_WINDOWSTATION
      {ERROR_SUCCESS, kNotInstalled},
      {0xE0000235, kNotInstalled},  // ERROR_IN_WOW64
  };
  for (const auto& [error, exitCode] : rows) EXPECT_EQ(exitCodeFor(error), exitCode) << error;
}

}  // namespace
}  // namespace tolvanix::test
