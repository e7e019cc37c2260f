#include <gtest/gtest.h>

#include <cstring>

#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

DWORD format(DWORD code, char* text, DWORD size, DWORD flags = FORMAT_MESSAGE_IGNORE_INSERTS) {
  return FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | flags, nullptr, code,
                        MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text, size, nullptr);
}

TEST(FormatMessage, Code_GivesOneLineOfTextOrAnError) {
  char text[512] = "";
  for (const DWORD code : {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_BAD_EXE_FORMAT}) {
    const DWORD length = format(code, text, sizeof text);
    EXPECT_EQ(length, std::strlen(text)) << code;
    EXPECT_GT(length, 2U) << code;
    EXPECT_EQ(std::strstr(text, "\r\n"), text + length - 2) << code;
  }
  char* allocated = nullptr;
  const DWORD length = format(ERROR_BAD_EXE_FORMAT, reinterpret_cast<char*>(&allocated), 0,
                              FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_ALLOCATE_BUFFER);
  const LocalMemoryOwner owner(allocated);
  EXPECT_STREQ(allocated, text);
  EXPECT_EQ(length, std::strlen(text));

  EXPECT_EQ(format(ERROR_LINE_NOT_FOUND, text, sizeof text), 0U);
  EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
  EXPECT_EQ(format(ERROR_FILE_NOT_FOUND, text, 4), 0U);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(format(ERROR_BAD_EXE_FORMAT, text, sizeof text, 0), 0U) << "it has an insert";
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace tolvanix::test
