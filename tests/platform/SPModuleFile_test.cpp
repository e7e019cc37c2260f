#include <gtest/gtest.h>

#include <string>

#include "app/SPException.h"
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

}  // namespace
}  // namespace tolvanix::test
