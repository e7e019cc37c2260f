// The files of one folder of a sysfs tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tolvanix::winapi {

// Attribute files are at most one page (kernel.org/doc/Documentation/filesystems/sysfs.rst).
constexpr std::size_t kSysfsPage = 4096;

class SysfsFolder {
 public:
  // The folder at that path below an open one, which must stay open.
  SysfsFolder(int openFolder, std::string_view pathBelow);

  // The text of a file, no more than `buffer` holds; its first line; and that as a number
  // ("0x1DE0"). None when there is no such file; one that cannot be read is reported, too. The
  // texts are in `buffer`.
  std::optional<std::string_view> text(const char* file, std::span<char> buffer);
  std::optional<std::string_view> line(const char* file, std::span<char> buffer);
  std::optional<std::uint32_t> number(const char* file);

  // The last name that a link holds; empty when it cannot be read.
  std::string linkedName(const char* link);

 private:
  const char* pathOf(const char* file);

  int folder;
  std::size_t nameAt;  // after the slash
  std::string path;    // of the file that was asked for last
};

}  // namespace tolvanix::winapi
