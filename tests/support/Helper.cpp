#include "support/Helper.h"

#include "support/Files.h"

namespace tolvanix::test {

namespace fs = std::filesystem;

void placeHelper(const fs::path& program, std::string_view steps) {
  fs::create_directories(program.parent_path());
  fs::copy_file(TEST_HELPER_PROGRAM, program, fs::copy_options::overwrite_existing);
  writeFile(fs::path(program) += ".txt", steps);
}

}  // namespace tolvanix::test
