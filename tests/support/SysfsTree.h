// Sysfs trees of made-up computers.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace tolvanix::test {

// A tree of `count` PCI functions below `root`, to stand in place of /sys, with the files that this
// project and lspci read (lspci -O sysfs.path=<root>/bus/pci). The same count gives the same tree.
// Eight functions to a device, 32 devices to a bus, 256 buses to a domain; the vendors and devices
// are of many kinds, most of them in pci.ids. Failures throw.
void makeSysfsTree(const std::filesystem::path& root, std::size_t count);

// One function, for a tree made by hand. What is empty gets no file; what is not given is 0.
struct SysfsFunction {
  std::string address;  // "0000:00:1f.3"
  unsigned vendor = 0;
  unsigned device = 0;
  unsigned subVendor = 0;
  unsigned subDevice = 0;
  unsigned classCode = 0;
  unsigned revision = 0;
  std::string driver;
};
void addSysfsFunction(const std::filesystem::path& root, const SysfsFunction& function);

// A driver's module, with its version unless that is empty.
void addSysfsDriver(const std::filesystem::path& root, const std::string& driver,
                    const std::string& module, const std::string& version);

}  // namespace tolvanix::test
