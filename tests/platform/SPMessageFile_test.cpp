#include <gtest/gtest.h>

#include "app/SPException.h"
#include "platform/SPMessageFile.h"
#include "platform/SPModuleFile.h"
#include "support/Files.h"
#include "text/Conversion.h"
#include "winapi/winapi.h"

namespace tolvanix::test {
namespace {

TEST(SPMessageFile, LanguageCode_MatchesWholeWithoutRegardToCase) {
  const struct {
    const char* code;
    int primary;
    int sub;
  } cases[] = {{"es", 10, 3}, {"FR", 12, 1}, {"de", 7, 1},    {"zh", 4, 2},    {"Ja", 17, 1},
               {"en", 9, 1},  {"ko", 9, 1},  {"zh_TW", 9, 1}, {"de_AT", 9, 1}, {"", 9, 1}};
  for (const auto& c : cases) {
    const SPMessageFile messages(c.code);
    EXPECT_EQ(messages.getPrimaryLanguage(), c.primary) << c.code;
    EXPECT_EQ(messages.getSubLanguage(), c.sub) << c.code;
  }
}

TEST(MessageLibrary, Text_IsOfTheLanguageElseOfAnyThatIsThere) {
  const CurrentTempDir folder;
  const auto missing = [](const std::string& path) -> std::string {
    try {
      const SPModuleFile file(path.c_str());
    } catch (const SPException& e) {
      EXPECT_EQ(e.getErrorNum(), SPModuleFile::kFileNotFound) << path;
      return narrow(e.getMessage());
    }
    return "";
  };
  const std::string none = "Internal Error - Message not found";
  EXPECT_EQ(missing("none.xml"), none);
  EXPECT_EQ(missing(folder.path().string()), none);
  std::filesystem::copy_file(TEST_MESSAGES, folder / "TarvekSPMsg.DLL");
  EXPECT_EQ(missing("none.xml"), "none.xml is not there.");
  const struct {
    const char* code;
    std::uint32_t number;
    std::vector<SPUString> inserts;
    std::string text;
  } rows[] = {
      {"en", 6046, {SPUString(u"a"), SPUString(u"b")}, "a is closed, b too: %1."},
      {"en", 6046, {SPUString(u"%2"), SPUString(u"b")}, "b is closed, %2 too: %1."},
      {"en", 6046, {}, "%1 is closed, %2 too: %1."},
      {"de", 6046, {SPUString(u"a"), SPUString(u"b")}, "a ist zu."},
      {"de", 6047, {SPUString(u"a")}, "a is not there."},
      {"ja", 6047, {SPUString(u"a")}, "a is not there."},
      {"de", 6049, {SPUString(u"a")}, none},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(narrow(SPMessageFile(row.code).getMessage(row.number, row.inserts)), row.text)
        << row.code;
  }
  // The program itself never frees it.
  while (const HMODULE loaded = GetModuleHandleA("TarvekSPMsg.DLL")) FreeLibrary(loaded);
}

}  // namespace
}  // namespace tolvanix::test
