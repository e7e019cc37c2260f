#include "common/Files.h"

#include <cstdio>

#include "common/Outcome.h"
#include "text/StdioFile.h"
#include "winapi/winapi.h"

namespace tolvanix::kit {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

bool exists(const std::string& name, bool asFolder) {
  const DWORD attributes = GetFileAttributesA(name.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == asFolder;
}

}  // namespace

bool isFile(const std::string& name) {
  return exists(name, false);
}

bool isFolder(const std::string& name) {
  return exists(name, true);
}

std::string_view withoutFolder(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

std::string readFile(const std::string& name, std::uint64_t largest) {
  if (isFolder(name)) throw BadInput(name + ": this is a folder");
  if (!isFile(name)) throw BadInput(name + ": there is no such file");
  const StdioFile file(std::fopen(name.c_str(), "rb"));
  if (!file) throw BadInput(name + ": the file cannot be opened");
  // Until its end, whatever its size was said to be: it may be a pipe, or still grow.
  std::string bytes;
  std::size_t size = 0;
  do {
    bytes.resize(size + kBlock);
    size += std::fread(bytes.data() + size, 1, kBlock, file.get());
    if (size > largest) throw BadInput(name + ": the file is too large");
  } while (size == bytes.size());
  if (std::ferror(file.get()) != 0) throw BadInput(name + ": the file cannot be read");
  bytes.resize(size);
  return bytes;
}

void writeFile(const std::string& name, const std::string& bytes) {
  StdioFile file(std::fopen(name.c_str(), "wb"));
  const bool written =
      file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  if (!written || std::fclose(file.release()) != 0) {
    throw BadInput(name + ": the file cannot be written");
  }
}

}  // namespace tolvanix::kit
