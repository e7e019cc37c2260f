#include <gtest/gtest.h>

#include <cstring>

#include "support/ScopedRegistry.h"
#include "winapi/Owner.h"
#include "winapi/winapi.h"

namespace tolvanix {
namespace {

constexpr char kKey[] =
    R"(SYSTEM\CurrentControlSet\Control\Class\{00000000-7e57-0000-0000-000000000000}\0001)";
constexpr LSTATUS kSuccess = 0;

class Registry : public testing::Test {
 protected:
  Registry()
      : keys({{kKey,
               {test::textOf("Fits", std::string(63, 'x')),
                test::textOf("TooLong", std::string(64, 'x')),
                {"Number", REG_DWORD, std::string("\x04\x03\x02\x01", 4)},
                {"Bytes", REG_BINARY, std::string(64, '\xAB')}}}}) {
    HKEY opened = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kKey, 0, KEY_QUERY_VALUE, &opened), kSuccess);
    key.reset(opened);
  }

  LSTATUS query(const char* name) {
    std::memset(buffer, '#', sizeof buffer);
    size = 64;
    type = 0;
    return RegQueryValueExA(key.get(), name, nullptr, &type, buffer, &size);
  }

  test::ScopedRegistry keys;
  RegistryKeyOwner key;
  BYTE buffer[65];
  DWORD size = 0;
  DWORD type = 0;
};

TEST_F(Registry, Query_FillsTypeSizeAndData) {
  EXPECT_EQ(query("fits"), kSuccess) << "the case of names does not count";
  EXPECT_EQ(size, 64U);
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_STREQ(reinterpret_cast<char*>(buffer), std::string(63, 'x').c_str());
  EXPECT_EQ(query("Number"), kSuccess);
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
  EXPECT_EQ(std::memcmp(buffer, "\x04\x03\x02\x01#", 5), 0);
  EXPECT_EQ(query("Bytes"), kSuccess);
  EXPECT_EQ(size, 64U);
  EXPECT_EQ(buffer[64], '#') << "bytes get no zero";
}

TEST_F(Registry, TooSmallBuffer_IsMoreDataAndStaysAlone) {
  EXPECT_EQ(query("TooLong"), static_cast<LSTATUS>(ERROR_MORE_DATA));
  EXPECT_EQ(size, 65U);
  EXPECT_EQ(buffer[0], '#');
  size = 0;
  EXPECT_EQ(RegQueryValueExA(key.get(), "TooLong", nullptr, nullptr, nullptr, &size), kSuccess);
  EXPECT_EQ(size, 65U);
}

TEST_F(Registry, MissingKeyOrValue_IsFileNotFound) {
  EXPECT_EQ(query("Missing"), static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND));
  HKEY opened = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SYSTEM\\Missing", 0, KEY_QUERY_VALUE, &opened),
            static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND));
}

}  // namespace
}  // namespace tolvanix
