#include "SystemError.h"

#include <algorithm>
#include <iterator>

namespace {

struct Meaning {
  std::uint32_t systemError;
  ExitCode exitCode;
};

// In numbers, since they are checked on other systems too: winerror.h and setupapi.h name them.
constexpr Meaning kMeanings[] = {
    {2, kInfUnusable},           // ERROR_FILE_NOT_FOUND
    {3, kInfUnusable},           // ERROR_PATH_NOT_FOUND
    {5, kNoRights},              // ERROR_ACCESS_DENIED
    {123, kInfUnusable},         // ERROR_INVALID_NAME
    {259, kNotBetter},           // ERROR_NO_MORE_ITEMS
    {740, kNoRights},            // ERROR_ELEVATION_REQUIRED
    {1314, kNoRights},           // ERROR_PRIVILEGE_NOT_HELD
    {1459, kNeedsAnswer},        // ERROR_REQUIRES_INTERACTIVE_WINDOWSTATION
    {0xE0000000, kInfUnusable},  // ERROR_EXPECTED_SECTION_NAME
    {0xE0000001, kInfUnusable},  // ERROR_BAD_SECTION_NAME_LINE
    {0xE0000002, kInfUnusable},  // ERROR_SECTION_NAME_TOO_LONG
    {0xE0000003, kInfUnusable},  // ERROR_GENERAL_SYNTAX
    {0xE0000100, kInfUnusable},  // ERROR_WRONG_INF_STYLE
    {0xE0000101, kInfUnusable},  // ERROR_SECTION_NOT_FOUND
    {0xE0000102, kInfUnusable},  // ERROR_LINE_NOT_FOUND
    {0xE000020B, kNoDevice},     // ERROR_NO_SUCH_DEVINST
};

}  // namespace

ExitCode exitCodeFor(std::uint32_t systemError) {
  const auto* const found =
      std::find_if(std::begin(kMeanings), std::end(kMeanings),
                   [systemError](const Meaning& row) { return row.systemError == systemError; });
  return found != std::end(kMeanings) ? found->exitCode : kNotInstalled;
}
