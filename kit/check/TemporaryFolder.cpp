#include "check/TemporaryFolder.h"

#include <random>
#include <system_error>

namespace tolvanix::kit {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    folder = fs::temp_directory_path() / ("tolvanixkit-" + std::to_string(random()));
  } while (!fs::create_directory(folder));
  fs::permissions(folder, fs::perms::owner_all);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

std::string TemporaryFolder::file(const std::string& name) const {
  const std::u8string path = (folder / name).u8string();
  return {path.begin(), path.end()};
}

}  // namespace tolvanix::kit
