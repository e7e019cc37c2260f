// The computer that a Windows registry export describes.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "winapi/posix/machine/Machine.h"
#include "winapi/posix/machine/RegistryExport.h"

namespace tolvanix::winapi {

class RegistryMachine : public Machine {
 public:
  // Reads the export; one that cannot be read, or is malformed, is reported and leaves the
  // computer empty.
  explicit RegistryMachine(const std::string& file);

  std::size_t deviceCount() const override { return devices.size(); }
  std::optional<RegistryValue> deviceProperty(std::size_t device, DWORD property) const override;
  bool hasKey(std::string_view path) const override;
  std::optional<RegistryValue> value(std::string_view path, std::string_view name) const override;

 private:
  ExportedKeys keys;
  std::vector<const ExportedKey*> devices;  // in the order of the file
};

}  // namespace tolvanix::winapi
