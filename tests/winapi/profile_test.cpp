#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/Files.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

constexpr char kFile[] = ".\\test.ini";

class Profile : public testing::Test {
 protected:
  void write(std::string_view bytes) const { writeFile(folder / "test.ini", bytes); }

  static std::string names(DWORD size = 1000) {
    std::string buffer(size, 'x');
    const DWORD length = GetPrivateProfileSectionNamesA(buffer.data(), size, kFile);
    return buffer.substr(0, length);
  }

  static std::string value(const char* section, const char* key, DWORD size = 1000) {
    std::string buffer(size, 'x');
    const DWORD length =
        GetPrivateProfileStringA(section, key, "default", buffer.data(), size, kFile);
    EXPECT_EQ(buffer[length], '\0');
    return buffer.substr(0, length);
  }

 private:
  CurrentTempDir folder;
};

TEST_F(Profile, NoSuchFile_GivesNoNamesAndTheDefault) {
  EXPECT_EQ(names(), "");
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(value("A", "k"), "default");
  EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
  write("[A]\nk=v\n");
  char buffer[16];
  EXPECT_EQ(GetPrivateProfileSectionNamesA(buffer, sizeof buffer, "test.ini"), 0U)
      << "without a folder the name is not one in the current folder";
}

TEST_F(Profile, Sections_AreListedInFileOrderWithDuplicates) {
  write("k=0\n[B]\n[ A a ] junk\n;[no]\n[unclosed\n[]\n[x] y] z\n[b]\n");
  EXPECT_EQ(names(), std::string("B\0A a\0x] y\0b\0", 13));
  EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
}

TEST_F(Profile, LongerThanTheBuffer_IsCut) {
  write("[abc]\nk=abcdef\n[def]\n");
  EXPECT_EQ(names(10), std::string("abc\0def\0", 8));
  EXPECT_EQ(names(8), std::string("abc\0de", 6));
  EXPECT_EQ(value("abc", "k", 7), "abcdef");
  EXPECT_EQ(value("abc", "k", 6), "abcde");
}

TEST_F(Profile, Values) {
  write(
      "[A]\n  Plain = some text \nquoted=\" 8086 \"\nsingle='x'\nhalf=\"80\"86\ncomment=1 ; x\n"
      "empty=\nPLAIN=second\n; hidden=1\nbare\n[B]\nk=b\n[a]\nonly=second\n");
  const std::vector<std::vector<const char*>> rows = {
      {"A", "plain", "some text"}, {"a", "QUOTED", " 8086 "},
      {"A", "single", "x"},        {"A", "half", "\"80\"86"},
      {"A", "comment", "1 ; x"},   {"A", "empty", ""},
      {"A", "hidden", "default"},  {"A", "bare", "default"},
      {"A", "k", "default"},       {"B", "k", "b"},
      {"A", "only", "default"},    {"C", "k", "default"}};
  for (const auto& row : rows) EXPECT_EQ(value(row[0], row[1]), row[2]) << row[0] << row[1];
}

TEST_F(Profile, EveryEncodingAndLineEnd_IsRead) {
  for (const std::string& bytes :
       {std::string("[A]\r\nk=v\r\n"), std::string("[A]\rk=v"), std::string("\xEF\xBB\xBF[A]\nk=v"),
        utf16File(u"[A]\r\nk=v\r\n"), std::string("\xFE\xFF\0[\0A\0]\0\n\0k\0=\0v", 16)}) {
    write(bytes);
    EXPECT_EQ(names(), std::string("A\0", 2));
    EXPECT_EQ(value("A", "k"), "v");
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
  }
}

}  // namespace
}  // namespace tolvanix::test
