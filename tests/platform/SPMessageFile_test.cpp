#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/SPException.h"
#include "platform/SPMessageFile.h"
#include "platform/SPModuleFile.h"
#include "support/Files.h"
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
  const auto missing = [](const std::string& path) -> SPUString {
    try {
      const SPModuleFile file(path.c_str());
    } catch (const SPException& e) {
      EXPECT_EQ(e.getErrorNum(), SPModuleFile::kFileNotFound) << path;
      return e.getMessage();
    }
    return {};
  };
  constexpr char16_t kNoText[] = u"Internal Error - Message not found";
  EXPECT_TRUE(missing("none.xml") == SPUString(kNoText));
  EXPECT_TRUE(missing(folder.path().string()) == SPUString(kNoText));
  std::filesystem::copy_file(TEST_MESSAGES, folder / "TarvekSPMsg.DLL");
  EXPECT_TRUE(missing("none.xml") == SPUString(u"none.xml is not there."));
  const struct {
    const char* code;
    std::uint32_t number;
    std::vector<const char16_t*> inserts;
    const char16_t* text;
  } rows[] = {
      {"en", 6046, {u"a", u"b"}, u"a is closed, b too: %1."},
      {"en", 6046, {u"%2", u"b"}, u"b is closed, %2 too: %1."},
      {"en", 6046, {}, u"%1 is closed, %2 too: %1."},
      {"de", 6046, {u"a", u"b"}, u"a ist zu."},
      {"de", 6047, {u"a"}, u"a is not there."},
      {"ja", 6047, {u"a"}, u"a is not there."},
      {"de", 6049, {u"a"}, kNoText},
  };
  for (const auto& row : rows) {
    const std::vector<SPUString> inserts(row.inserts.begin(), row.inserts.end());
    EXPECT_TRUE(SPMessageFile(row.code).getMessage(row.number, inserts) == SPUString(row.text))
        << row.code << ' ' << row.number;
  }
  // The program itself never frees it.
  while (const HMODULE loaded = GetModuleHandleA("TarvekSPMsg.DLL")) FreeLibrary(loaded);
}

}  // namespace
}  // namespace tolvanix::test
