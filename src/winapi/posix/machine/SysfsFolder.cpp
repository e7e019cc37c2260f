#include "winapi/posix/machine/SysfsFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "text/Hex.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/base/Report.h"

namespace tolvanix::winapi {

SysfsFolder::SysfsFolder(int openFolder, std::string_view pathBelow)
    : folder(openFolder), nameAt(pathBelow.size() + 1) {
  constexpr std::size_t kLongestName = 24;  // of a file that is read often
  path.reserve(nameAt + kLongestName);
  path.append(pathBelow).append("/");
}

const char* SysfsFolder::pathOf(const char* file) {
  path.resize(nameAt);
  return path.append(file).c_str();
}

std::optional<std::string_view> SysfsFolder::text(const char* file, std::span<char> buffer) {
  const auto found = readSmallFile(folder, pathOf(file), buffer.data(), buffer.size());
  // What is not there is nothing to speak of; what is there and cannot be read is.
  if (!found && errno != ENOENT && errno != ENOTDIR) report(path + ": " + std::strerror(errno));
  return found;
}

std::optional<std::string_view> SysfsFolder::line(const char* file, std::span<char> buffer) {
  const auto found = text(file, buffer);
  return found ? std::optional(found->substr(0, found->find('\n'))) : std::nullopt;
}

std::optional<std::uint32_t> SysfsFolder::number(const char* file) {
  char buffer[kSysfsPage];
  const auto found = line(file, buffer);
  if (!found || !found->starts_with("0x")) return std::nullopt;
  return readHex(found->substr(2));
}

std::string SysfsFolder::linkedName(const char* link) {
  char buffer[kSysfsPage];
  const ssize_t size = readlinkat(folder, pathOf(link), buffer, sizeof buffer);
  if (size <= 0) return {};
  const std::string_view target(buffer, static_cast<std::size_t>(size));
  return std::string(target.substr(target.rfind('/') + 1));
}

}  // namespace tolvanix::winapi
