#include "winapi/posix/machine/SysfsTree.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "winapi/posix/machine/Machine.h"
#include "winapi/posix/machine/SysfsFolder.h"

namespace tolvanix::winapi {
namespace {

constexpr char kFunctionsFolder[] = "bus/pci/devices";

struct DirectoryCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};

// Why a function's files do not even give its vendor and device.
std::string problemOf(int functions, const std::string& name) {
  const FileDescriptor folder(openat(functions, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (folder.get() < 0) return std::strerror(errno);
  return "its vendor and device cannot be read";
}

}  // namespace

SysfsTree::SysfsTree(const std::string& rootFolder)
    : root(rootFolder), tree(open(rootFolder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

std::vector<SysfsTree::Entry> SysfsTree::functions() const {
  const int descriptor =
      tree.get() < 0 ? -1
                     : openat(tree.get(), kFunctionsFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, DirectoryCloser> folder(descriptor < 0 ? nullptr
                                                                    : fdopendir(descriptor));
  if (folder == nullptr) {
    report("", std::strerror(errno));
    if (descriptor >= 0) close(descriptor);
    return {};
  }
  std::vector<Entry> listed = listEntries(folder.get());
  std::vector<Entry> readable;
  for (Entry& entry : listed) {
    SysfsFolder files(descriptor, entry.name);
    entry.function = readSysfsFunction(files);
    if (entry.function.vendor && entry.function.device) {
      readable.push_back(std::move(entry));
    } else {
      report(entry.name, problemOf(descriptor, entry.name));
    }
  }
  return readable;
}

void SysfsTree::report(const std::string& function, const std::string& problem) const {
  std::string place = root + '/' + kFunctionsFolder;
  if (!function.empty()) place.append("/").append(function);
  reportMachine(place, 0, problem);
}

// The functions that the folder names, not yet read.
std::vector<SysfsTree::Entry> SysfsTree::listEntries(DIR* folder) const {
  std::vector<Entry> entries;
  errno = 0;
  while (const dirent* const found = readdir(folder)) {
    const std::optional<PciAddress> address = parsePciAddress(found->d_name);
    if (address) entries.push_back({found->d_name, *address});
    errno = 0;
  }
  if (errno != 0) report("", std::strerror(errno));
  std::sort(entries.begin(), entries.end(),
            [](const Entry& left, const Entry& right) { return left.address < right.address; });
  return entries;
}

std::optional<std::string> SysfsTree::driverVersion(const std::string& function,
                                                    std::string driver) const {
  char buffer[kSysfsPage];
  const std::string folder = std::string(kFunctionsFolder) + '/' + function;
  auto version = SysfsFolder(tree.get(), folder).line("driver/module/version", buffer);
  if (!version) {
    // A built-in driver often has its module under its own name, with '_' for '-' as in all names
    // of modules.
    std::replace(driver.begin(), driver.end(), '-', '_');
    version = SysfsFolder(tree.get(), "module/" + driver).line("version", buffer);
  }
  if (!version) return std::nullopt;
  return std::string(*version);
}

}  // namespace tolvanix::winapi
