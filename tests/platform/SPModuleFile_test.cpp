#include "platform/SPModuleFile.h"

#include <gtest/gtest.h>

#include <string>

#include "app/SPException.h"
#include "platform/SPMessageFile.h"
#include "support/Files.h"

namespace tolvanix {
namespace {

TEST(SPModuleFile, Text_FollowsTheByteOrderMark) {
  const test::TempDir folder;
  const struct {
    std::string bytes;
    std::u16string text;
    bool isUnicode;
  } cases[] = {
      {test::utf16File(u"a\u7F51"), u"\uFEFFa\u7F51", true},
      {test::utf16File(u"a") + "x", u"\uFEFFa", true},  // an odd byte at the end
      {"\xFF\xFE", u"\uFEFF", true},
      {"a\xC3\xA9\r\n", u"a\u00C3\u00A9\r\n", false},
      {std::string("a\0b", 3), u"a", false},
      {"\xFF", u"\u00FF", false},
      {"", u"", false},
  };
  for (const auto& c : cases) {
    test::writeFile(folder / "file", c.bytes);
    const SPModuleFile file((folder / "file").string().c_str());
    EXPECT_EQ(std::u16string(file.getText()), c.text);
    EXPECT_EQ(file.getIsUnicode(), c.isUnicode);
  }
}

TEST(SPModuleFile, MissingFileOrFolder_ThrowsNotFound) {
  const test::TempDir folder;
  for (const std::string& path : {(folder / "absent").string(), folder.path().string()}) {
    try {
      const SPModuleFile file(path.c_str());
      ADD_FAILURE() << path;
    } catch (const SPException& e) {
      EXPECT_EQ(e.getErrorNum(), SPModuleFile::kFileNotFound);
      EXPECT_TRUE(e.getMessage() == SPUString(u"Internal Error - Message not found"));
    }
  }
}

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

}  // namespace
}  // namespace tolvanix
