#include <gtest/gtest.h>

#include <string>

#include "app/SPException.h"
#include "platform/SPMessageFile.h"
#include "platform/SPModuleFile.h"
#include "support/Files.h"

namespace tolvanix::test {
namespace {

TEST(SPModuleFile, MissingFileOrFolder_ThrowsNotFound) {
  const TempDir folder;
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
}  // namespace tolvanix::test
