// The computer that a Linux sysfs tree describes (kernel.org/doc/Documentation/ABI/testing/
// sysfs-bus-pci), with the identifiers and texts that Windows would give its PCI functions.
#pragma once

#include <dirent.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "winapi/posix/base/FileDescriptor.h"
#include "winapi/posix/machine/Machine.h"
#include "winapi/posix/machine/PciIds.h"

namespace tolvanix::winapi {

class SysfsMachine : public Machine {
 public:
  // Scans `root`, which is in place of /sys. Whatever cannot be read is reported and left out.
  // `running`: the tree is that of the kernel that runs, whose release is the version of the
  // system, and of a driver without its own; another tree has neither.
  SysfsMachine(const std::string& root, bool running);

  std::size_t deviceCount() const override { return functions.size(); }
  std::optional<RegistryValue> deviceProperty(std::size_t device, DWORD property) const override;
  bool hasKey(std::string_view path) const override;
  std::optional<RegistryValue> value(std::string_view path, std::string_view name) const override;

 private:
  struct Address {
    std::uint32_t domain = 0;
    std::uint8_t bus = 0;
    std::uint8_t device = 0;
    std::uint8_t function = 0;
    auto operator<=>(const Address&) const = default;  // NOLINT(modernize-use-nullptr): no null
  };
  struct Function {
    PciModel model;
    std::uint16_t subVendor = 0;
    std::uint16_t subDevice = 0;
    std::optional<std::uint8_t> revision;
    std::uint16_t bus = 0;  // with the domain's number in the upper eight bits
    std::uint8_t device = 0;
    std::uint8_t function = 0;
    std::uint32_t driver = 0;  // index in `drivers`; the first one means none
  };
  // What is read of one function's folder.
  struct Entry {
    std::string name;
    Address address;
    // Without its bus and its driver; none when it cannot be read.
    std::optional<Function> function = {};
    std::string driver = {};
  };
  struct Driver {
    std::string name;
    std::string version;  // empty for none
  };

  static std::optional<Address> parseAddress(std::string_view name);
  void scan();
  std::vector<Entry> listEntries(DIR* folder) const;
  void readEntry(int devices, Entry& entry) const;
  void addFunctions(int devices, const std::vector<Entry>& entries);
  void report(const std::string& function, const std::string& problem) const;
  std::uint32_t driverIndex(int devices, std::string_view function, std::string_view name);
  std::string driverVersion(int devices, std::string_view function, const std::string& name) const;
  const Driver* driverOfKey(std::string_view path) const;
  static std::string hardwareIds(const Function& function);
  static std::string location(const Function& function);
  std::string_view description(std::size_t device) const;

  std::string root;
  bool running;
  FileDescriptor tree;
  std::vector<Function> functions;
  std::vector<Driver> drivers;
  std::unordered_map<std::string, std::uint32_t> driverIndexes;
  mutable std::vector<std::string> names;  // of the functions; empty until one is asked for
};

}  // namespace tolvanix::winapi
