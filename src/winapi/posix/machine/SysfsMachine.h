// The computer that a Linux sysfs tree describes, with the identifiers and texts that Windows would
// give its PCI functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "text/HardwareId.h"
#include "winapi/posix/machine/Machine.h"
#include "winapi/posix/machine/SysfsTree.h"

namespace tolvanix::winapi {

class SysfsMachine : public Machine {
 public:
  // Reads `root`, which is in place of /sys. Whatever cannot be read is reported and left out.
  // `running`: the tree is that of the kernel that runs, whose release is the version of the
  // system, and of a driver without its own; another tree has neither.
  SysfsMachine(const std::string& root, bool running);

  std::size_t deviceCount() const override { return functions.size(); }
  std::optional<RegistryValue> deviceProperty(std::size_t device, DWORD property) const override;
  bool hasKey(std::string_view path) const override;
  std::optional<RegistryValue> value(std::string_view path, std::string_view name) const override;

 private:
  struct Function {
    PciIdentifiers identifiers{};
    std::uint32_t classCode = 0;
    std::optional<std::uint8_t> revision;
    std::uint16_t bus = 0;  // with the domain's number in the upper eight bits
    std::uint8_t device = 0;
    std::uint8_t function = 0;
    std::uint32_t driver = 0;  // index in `drivers`; the first one means none
  };
  struct Driver {
    std::string name;
    std::string version;  // empty for none
  };

  static Function describe(const SysfsTree::Entry& entry, std::uint32_t domainNumber);
  std::uint32_t driverIndex(const SysfsTree& tree, const SysfsTree::Entry& entry);
  const Driver* driverOfKey(std::string_view path) const;
  static std::string hardwareIds(const Function& function);
  static std::string location(const Function& function);
  std::string_view description(std::size_t device) const;

  bool running;
  std::vector<Function> functions;
  std::vector<Driver> drivers;
  std::unordered_map<std::string, std::uint32_t> driverIndexes;
  mutable std::vector<std::string> names;  // of the functions; empty until one is asked for
};

}  // namespace tolvanix::winapi
