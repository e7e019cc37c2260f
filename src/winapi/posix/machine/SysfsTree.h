// The PCI functions and the drivers in a sysfs tree. Whatever cannot be read is reported and left
// out.
#pragma once

#include <dirent.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "winapi/posix/base/FileDescriptor.h"
#include "winapi/posix/machine/SysfsFunction.h"

namespace tolvanix::winapi {

class SysfsTree {
 public:
  struct Entry {
    std::string name;  // of its folder
    PciAddress address;
    SysfsFunction function = {};  // with a vendor and a device
  };

  // Opens `root`, which is in place of /sys.
  explicit SysfsTree(const std::string& rootFolder);

  // The functions, in the order of their addresses.
  std::vector<Entry> functions() const;

  // The version that the driver's module gives; none when it gives none. `function` is the name of
  // one that the driver serves.
  std::optional<std::string> driverVersion(const std::string& function, std::string driver) const;

  // Says what is wrong with that function, or with the folder of them all for an empty name.
  void report(const std::string& function, const std::string& problem) const;

 private:
  std::vector<Entry> listEntries(DIR* folder) const;

  std::string root;
  FileDescriptor tree;
};

}  // namespace tolvanix::winapi
