// Sysfs trees of made-up computers.
#pragma once

#include <cstddef>
#include <filesystem>

namespace tolvanix::test {

// A tree of `count` PCI functions below `root`, to stand in place of /sys, with the files that this
// project and lspci read (lspci -O sysfs.path=<root>/bus/pci). The same count gives the same tree.
// Eight functions to a device, 32 devices to a bus, buses of four domains in turns, at most 256 of
// each; the vendors and devices are of many kinds, most of them in pci.ids. Failures throw.
void makeSysfsTree(const std::filesystem::path& root, std::size_t count);

}  // namespace tolvanix::test
