// generate_sysfs_tree <folder> <count>: makes a sysfs tree of that many PCI functions, to measure
// the inventory with TOLVANIX_MACHINE=<folder>.
#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>

#include "SysfsTree.h"

int main(int argc, char** argv) {
  std::size_t count = 0;
  const char* const digits = argc == 3 ? argv[2] : "";
  const auto [end, error] = std::from_chars(digits, digits + std::strlen(digits), count);
  if (error != std::errc() || *end != '\0') {
    std::fprintf(stderr, "usage: generate_sysfs_tree <folder> <count>\n");
    return 2;
  }
  try {
    tolvanix::test::makeSysfsTree(argv[1], count);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "generate_sysfs_tree: %s\n", problem.what());
    return 1;
  }
  return 0;
}
