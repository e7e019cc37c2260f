#pragma once

#include <filesystem>
#include <string>

namespace tolvanix::kit {

// A new folder for this user alone; it and all in it go with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::filesystem::path& path() const { return folder; }
  // The path of a file in it, as narrow text.
  std::string file(const std::string& name) const;

 private:
  std::filesystem::path folder;
};

}  // namespace tolvanix::kit
