// What INI files hold is compared with Wine (tests/checks/check_answers.py); here is what comes of
// a name.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "support/Files.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(Profile, NameOfNoFile_GivesNoNamesAndTheDefault) {
  const CurrentTempDir folder;
  writeFile(folder / "test.ini", "[A]\nk=v\n");
  char text[16];
  // Without a folder the name is not one in the current folder.
  for (const char* const name : {".\\none.ini", "test.ini"}) {
    EXPECT_EQ(GetPrivateProfileSectionNamesA(text, sizeof text, name), 0U) << name;
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND) << name;
    EXPECT_EQ(GetPrivateProfileStringA("A", "k", "default", text, sizeof text, name), 7U) << name;
    EXPECT_STREQ(text, "default");
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND) << name;
  }
  EXPECT_EQ(GetPrivateProfileStringA("A", "k", "default", text, sizeof text, ".\\test.ini"), 1U);
  EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
}

TEST(Profile, FileThatIsWrittenAgain_IsReadAgain) {
  const CurrentTempDir folder;
  for (int i = 0; i < 100; ++i) {
    const std::string value = std::to_string(i % 10);
    writeFile(folder / "test.ini", "[A]\nk=" + value + "\n");
    // Some are read in the tick of the clock in which they were written, and some are not.
    if (i % 20 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    char text[16];
    GetPrivateProfileStringA("A", "k", "", text, sizeof text, ".\\test.ini");
    ASSERT_EQ(text, value) << i;
  }
}

}  // namespace
}  // namespace tolvanix::test
