// The sample helper program's exit codes for the errors of Windows.
#include <gtest/gtest.h>

#include <cstdint>

#include "helper/SystemError.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(HelperExitCode, SystemError_HasItsMeaningAndIsNeverASuccess) {
  const struct {
    std::uint32_t systemError;
    ExitCode exitCode;
  } rows[] = {
      {ERROR_FILE_NOT_FOUND, kInfUnusable},
      {ERROR_PATH_NOT_FOUND, kInfUnusable},
      {ERROR_INVALID_NAME, kInfUnusable},
      {ERROR_WRONG_INF_STYLE, kInfUnusable},
      {ERROR_EXPECTED_SECTION_NAME, kInfUnusable},
      {ERROR_BAD_SECTION_NAME_LINE, kInfUnusable},
      {ERROR_SECTION_NAME_TOO_LONG, kInfUnusable},
      {0xE0000003, kInfUnusable},  // ERROR_GENERAL_SYNTAX
      {0xE0000101, kInfUnusable},  // ERROR_SECTION_NOT_FOUND
      {ERROR_LINE_NOT_FOUND, kInfUnusable},
      {0xE000020B, kNoDevice},  // ERROR_NO_SUCH_DEVINST
      {ERROR_NO_MORE_ITEMS, kNotBetter},
      {ERROR_ACCESS_DENIED, kNoRights},
      {740, kNoRights},      // ERROR_ELEVATION_REQUIRED
      {1314, kNoRights},     // ERROR_PRIVILEGE_NOT_HELD
      {1459, kNeedsAnswer},  // ERROR_REQUIRES_INTERACTIVE_WINDOWSTATION
      {ERROR_SUCCESS, kNotInstalled},
      {1, kNotInstalled},
      {0xE0000235, kNotInstalled},  // ERROR_IN_WOW64
  };
  for (const auto& row : rows) EXPECT_EQ(exitCodeFor(row.systemError), row.exitCode);
}

}  // namespace
}  // namespace tolvanix::test
