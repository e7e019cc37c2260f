#include "support/Helper.h"

#include "support/Files.h"

namespace tolvanix::test {

namespace fs = std::filesystem;

void placeHelper(const fs::path& program, std::string_view steps) {
  fs::create_directories(program.parent_path());
  fs::remove(program);  // the option to overwrite does not work everywhere
  fs::copy_file(TEST_HELPER_PROGRAM, program);
  writeFile(fs::path(program).replace_extension(".txt"), steps);
}

}  // namespace tolvanix::test
