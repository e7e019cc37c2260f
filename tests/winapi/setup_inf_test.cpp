// INF files, to the documented behaviour. What they contain is compared with Wine
// (tests/checks/check_answers.py); here is how they are asked.
#include <gtest/gtest.h>

#include "support/Files.h"
#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

class Inf : public testing::Test {
 protected:
  static HINF open(const char* name, UINT* line = nullptr) {
    return SetupOpenInfFileA(name, nullptr, INF_STYLE_WIN4, line);
  }

  const CurrentTempDir folder;
};

TEST_F(Inf, Open_FailsWithItsErrorAndLine) {
  writeFile(folder / "good.inf", "[Version]\nSignature=\"$Windows NT$\"");
  writeFile(folder / "bad.inf", "; one\n[Version]\n\n[open\n");
  std::filesystem::create_directory(folder / "folder.inf");
  const struct {
    const char* name;
    DWORD error;
  } rows[] = {
      {"good.inf", ERROR_FILE_NOT_FOUND},  // the system's own folder is meant
      {".\\none.inf", ERROR_FILE_NOT_FOUND},  {".\\none\\x.inf", ERROR_PATH_NOT_FOUND},
      {".\\folder.inf", ERROR_ACCESS_DENIED}, {".\\bad.inf", ERROR_BAD_SECTION_NAME_LINE},
  };
  GUID guid{};
  char name[64] = "";
  for (const auto& row : rows) {
    EXPECT_FALSE(InfOwner(open(row.name))) << row.name;
    EXPECT_EQ(GetLastError(), row.error) << row.name;
    EXPECT_FALSE(SetupDiGetINFClassA(row.name, &guid, name, sizeof name, nullptr)) << row.name;
  }
  EXPECT_TRUE(InfOwner(open("./good.inf")));
  UINT line = 0;
  open(".\\bad.inf", &line);
  EXPECT_EQ(line, 4U);
}

TEST_F(Inf, StringField_SizesAndBuffers) {
  writeFile(folder / "test.inf",
            "[Version]\nSignature=\"$Windows NT$\"\n[S]\nk=%s%\n[Strings]\ns=abc\n");
  const InfOwner inf(open(".\\test.inf"));
  INFCONTEXT line{};
  EXPECT_FALSE(SetupFindFirstLineA(inf.get(), "none", nullptr, &line));
  EXPECT_NE(GetLastError(), ERROR_SUCCESS);
  ASSERT_TRUE(SetupFindFirstLineA(inf.get(), "S", nullptr, &line));
  DWORD size = 0;
  EXPECT_FALSE(SetupGetStringFieldA(&line, 2, nullptr, 0, &size));
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, nullptr, 0, &size));
  EXPECT_EQ(size, 4U);
  char text[4] = "x";
  for (const DWORD room : {1U, 3U}) {
    EXPECT_FALSE(SetupGetStringFieldA(&line, 1, text, room, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_STREQ(text, "x");
  }
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, text, 4, &size));
  EXPECT_STREQ(text, "abc");
}

}  // namespace
}  // namespace tolvanix::test
