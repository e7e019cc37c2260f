#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

constexpr DWORD kNeutral = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);

DWORD format(DWORD code, char* text, DWORD size, DWORD flags = FORMAT_MESSAGE_IGNORE_INSERTS) {
  return FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | flags, nullptr, code, kNeutral, text, size,
                        nullptr);
}

TEST(FormatMessage, KnownCode_GivesOneLineOfText) {
  for (const DWORD code : {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_BAD_EXE_FORMAT}) {
    char text[512] = "";
    const DWORD length = format(code, text, sizeof text);
    EXPECT_EQ(length, std::strlen(text)) << code;
    EXPECT_GT(length, 2U) << code;
    EXPECT_EQ(std::string(text).find("\r\n"), length - 2) << code;
  }
  char* allocated = nullptr;
  const DWORD length = format(ERROR_FILE_NOT_FOUND, reinterpret_cast<char*>(&allocated), 0,
                              FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_ALLOCATE_BUFFER);
  const LocalMemoryOwner owner(allocated);
  ASSERT_NE(allocated, nullptr);
  EXPECT_EQ(length, std::strlen(allocated));
}

TEST(FormatMessage, Failures_HaveTheirErrors) {
  char text[512] = "";
  EXPECT_EQ(format(ERROR_LINE_NOT_FOUND, text, sizeof text), 0U);
  EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
  EXPECT_EQ(format(ERROR_FILE_NOT_FOUND, text, 4), 0U);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(format(ERROR_BAD_EXE_FORMAT, text, sizeof text, 0), 0U) << "it has an insert";
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace tolvanix::test
