// The computer that a test presents, from a registry export (".reg").
#pragma once

#include <filesystem>
#include <memory>

namespace tolvanix::test {

// For the life of the object, this process and the programs that it starts see the export's
// devices, driver versions and version of the system. Off Windows the layer reads the export (or a
// sysfs tree); under Wine it is imported, and devices are enumerated in the order of their names.
// On Windows itself nothing is imported, since that would change the drivers of the computer: the
// test is skipped. Device sets are closed before it ends.
class Computer {
 public:
  explicit Computer(const std::filesystem::path& registryExport);

 private:
  std::shared_ptr<void> end;  // what is done at the end
};

}  // namespace tolvanix::test
