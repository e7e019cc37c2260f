#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "winapi/Owner.h"

namespace tolvanix {
namespace {

constexpr DWORD kSystem = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
constexpr DWORD kNeutral = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);

TEST(FormatMessage, KnownCode_GivesOneLineOfText) {
  for (const DWORD code :
       {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_INVALID_DATA, ERROR_INVALID_PARAMETER,
        ERROR_INSUFFICIENT_BUFFER, ERROR_BAD_EXE_FORMAT, ERROR_NO_MORE_ITEMS}) {
    char text[512] = "";
    const DWORD length =
        FormatMessageA(kSystem, nullptr, code, kNeutral, text, sizeof text, nullptr);
    EXPECT_EQ(length, std::strlen(text)) << code;
    EXPECT_GT(length, 2U) << code;
    EXPECT_EQ(std::string(text).find('\r'), length - 2) << code;
    EXPECT_EQ(text[length - 1], '\n') << code;
  }
}

TEST(FormatMessage, AllocateBuffer_GivesMemoryToFree) {
  char* text = nullptr;
  const DWORD length =
      FormatMessageA(kSystem | FORMAT_MESSAGE_ALLOCATE_BUFFER, nullptr, ERROR_FILE_NOT_FOUND,
                     kNeutral, reinterpret_cast<char*>(&text), 0, nullptr);
  const LocalMemoryOwner owner(text);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(length, std::strlen(text));
}

TEST(FormatMessage, NoTextForTheCode_SetsMessageNotFound) {
  char text[64] = "";
  EXPECT_EQ(
      FormatMessageA(kSystem, nullptr, ERROR_LINE_NOT_FOUND, kNeutral, text, sizeof text, nullptr),
      0U);
  EXPECT_EQ(GetLastError(), ERROR_MR_MID_NOT_FOUND);
}

TEST(FormatMessage, InsertWithoutArguments_FailsUnlessInsertsAreIgnored) {
  char text[512] = "";
  EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_BAD_EXE_FORMAT, kNeutral,
                           text, sizeof text, nullptr),
            0U);
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(FormatMessage, BufferTooSmall_SetsInsufficientBuffer) {
  char text[4] = "";
  EXPECT_EQ(
      FormatMessageA(kSystem, nullptr, ERROR_FILE_NOT_FOUND, kNeutral, text, sizeof text, nullptr),
      0U);
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

TEST(LocalAlloc, ZeroInitialised) {
  const LocalMemoryOwner memory(LocalAlloc(LPTR, 100));
  ASSERT_TRUE(memory);
  EXPECT_EQ(std::string(static_cast<const char*>(memory.get()), 100), std::string(100, '\0'));
}

}  // namespace
}  // namespace tolvanix
