#include "winapi/posix/machine/PciIds.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "text/Hex.h"
#include "winapi/posix/base/Report.h"

namespace tolvanix::winapi {
namespace {

constexpr const char* kLists[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};

using Names = std::unordered_map<std::uint32_t, std::string_view>;

std::uint32_t deviceKey(std::uint32_t vendor, std::uint32_t device) {
  return vendor << 16 | device;
}

// The number that `digits` digits at `at` are; none when other characters are there.
std::optional<std::uint32_t> idAt(std::string_view line, std::size_t at, std::size_t digits) {
  return line.size() >= at + digits ? readHex(line.substr(at, digits)) : std::nullopt;
}

// What follows an ID and the blanks after it.
std::string_view nameIn(std::string_view line, std::size_t idEnd) {
  return line.substr(std::min(line.find_first_not_of(' ', idEnd), line.size()));
}

std::string_view nameOf(const Names& names, std::uint32_t key) {
  const auto found = names.find(key);
  return found == names.end() ? std::string_view() : found->second;
}

// What the list says of some devices, and of all classes.
class ListReader {
 public:
  explicit ListReader(std::span<const PciModel> models) {
    for (const PciModel& model : models) devices[deviceKey(model.vendor, model.device)] = {};
  }

  void read(std::string_view list) {
    while (!list.empty()) {
      const std::string_view line = list.substr(0, list.find('\n'));
      list.remove_prefix(std::min(line.size() + 1, list.size()));
      if (line.empty() || line.front() == '#') continue;
      if (line.front() == '\t') {
        readEntry(line);
      } else {
        startSection(line);
      }
    }
  }

  std::string_view name(const PciModel& model) const {
    std::string_view name = nameOf(devices, deviceKey(model.vendor, model.device));
    if (name.empty()) name = nameOf(subclasses, model.classCode >> 8);
    if (name.empty()) name = nameOf(baseClasses, model.classCode >> 16);
    return name;
  }

 private:
  // "1de0  Sample Devices", "C 02  Network controller", or of a kind that is not for PCI
  void startSection(std::string_view line) {
    vendor = idAt(line, 0, 4);
    baseClass = line.starts_with("C ") ? idAt(line, 2, 2) : std::nullopt;
    if (baseClass) baseClasses[*baseClass] = nameIn(line, 4);
  }

  // "\t0d57  A device" or "\t00  A subclass"; a further tab is no digit of an ID.
  void readEntry(std::string_view line) {
    if (vendor) {
      const auto device = idAt(line, 1, 4);
      const auto wanted = device ? devices.find(deviceKey(*vendor, *device)) : devices.end();
      if (wanted != devices.end()) wanted->second = nameIn(line, 5);
    } else if (baseClass) {
      const auto subclass = idAt(line, 1, 2);
      if (subclass) subclasses[*baseClass << 8 | *subclass] = nameIn(line, 3);
    }
  }

  // Of the section that is read; at most one of them.
  std::optional<std::uint32_t> vendor;
  std::optional<std::uint32_t> baseClass;
  Names devices;  // only those wanted
  Names subclasses;
  Names baseClasses;
};

}  // namespace

std::vector<std::string_view> pciNames(std::string_view list, std::span<const PciModel> models) {
  ListReader reader(models);
  reader.read(list);
  std::vector<std::string_view> names;
  names.reserve(models.size());
  for (const PciModel& model : models) names.push_back(reader.name(model));
  return names;
}

MappedFile installedPciIds() {
  for (const char* const list : kLists) {
    errno = 0;
    MappedFile mapped(list);
    if (!mapped.text().empty()) return mapped;
    if (errno != 0 && errno != ENOENT) report(std::string(list) + ": " + std::strerror(errno));
  }
  return MappedFile("");
}

}  // namespace tolvanix::winapi
