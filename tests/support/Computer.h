// A computer for whole runs, from a registry export (".reg").
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tolvanix::test {

// For the life of the object, a program that runs with `environment` sees the export's devices,
// driver versions and version of the system. Off Windows the layer reads the export; under Wine
// it is imported, and devices are enumerated in the order of their names. On Windows itself nothing
// is imported, since that would change the drivers of the computer: the test is skipped.
class Computer {
 public:
  explicit Computer(const std::filesystem::path& registryExport);
  Computer(const Computer&) = delete;
  Computer& operator=(const Computer&) = delete;
  ~Computer();

  const std::map<std::string, std::string>& environment() const { return variables; }

  // The document without the display adapter that every Wine has.
  static std::string withoutOwnDevice(std::string document);

 private:
  std::map<std::string, std::string> variables;
  std::vector<std::string> importedKeys;  // below HKEY_LOCAL_MACHINE
};

}  // namespace tolvanix::test
