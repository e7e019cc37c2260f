#include "winapi/posix/machine/SysfsMachine.h"

#include <sys/utsname.h>

#include <cstdio>
#include <map>
#include <set>

#include "text/Ascii.h"
#include "text/Hex.h"
#include "winapi/ClassKeys.h"
#include "winapi/posix/machine/PciIds.h"

namespace tolvanix::winapi {
namespace {

// The driver keys made for these devices: the driver's name below this class.
constexpr std::string_view kDriverClass = "pci\\";

// A domain and its bus have 16 bits of a location together. So a domain below 256 keeps its number,
// and each other one, in ascending order, gets the lowest that is free; none when all are taken.
std::map<std::uint32_t, std::uint32_t> domainNumbers(const std::set<std::uint32_t>& domains) {
  constexpr std::uint32_t kNumbers = 256;
  std::map<std::uint32_t, std::uint32_t> numbers;
  std::uint32_t next = 0;
  for (const std::uint32_t domain : domains) {
    if (domain < kNumbers) {
      numbers[domain] = domain;
      continue;
    }
    while (next < kNumbers && domains.contains(next)) ++next;
    if (next == kNumbers) break;
    numbers[domain] = next++;
  }
  return numbers;
}

struct KernelRelease {
  std::string text;
  DWORD major = 0;
  DWORD minor = 0;
};

KernelRelease kernelRelease() {
  utsname names{};
  KernelRelease release;
  if (uname(&names) != 0) return release;
  release.text = names.release;
  unsigned majorNumber = 0;
  unsigned minorNumber = 0;
  if (std::sscanf(names.release, "%u.%u", &majorNumber, &minorNumber) == 2) {
    release.major = majorNumber;
    release.minor = minorNumber;
  }
  return release;
}

}  // namespace

SysfsMachine::SysfsMachine(const std::string& root, bool isRunning)
    : running(isRunning), drivers(1) {
  const SysfsTree tree(root);
  const std::vector<SysfsTree::Entry> entries = tree.functions();
  std::set<std::uint32_t> domains;
  for (const SysfsTree::Entry& entry : entries) domains.insert(domains.end(), entry.address.domain);
  const std::map<std::uint32_t, std::uint32_t> numbers = domainNumbers(domains);
  for (const SysfsTree::Entry& entry : entries) {
    const auto number = numbers.find(entry.address.domain);
    if (number == numbers.end()) continue;
    Function& function = functions.emplace_back(describe(entry, number->second));
    function.driver = driverIndex(tree, entry);
  }
  if (numbers.size() < domains.size()) {
    tree.report("", "more than 256 PCI domains; the functions of " +
                        std::to_string(domains.size() - numbers.size()) + " are left out");
  }
}

SysfsMachine::Function SysfsMachine::describe(const SysfsTree::Entry& entry,
                                              std::uint32_t domainNumber) {
  const SysfsFunction& read = entry.function;
  const auto number = [](std::optional<std::uint32_t> given) {
    return static_cast<std::uint16_t>(given.value_or(0));
  };
  Function function;
  function.identifiers = {number(read.vendor), number(read.device), number(read.subDevice),
                          number(read.subVendor)};
  function.classCode = read.classCode.value_or(0) & 0xFFFFFF;
  if (read.revision) function.revision = static_cast<std::uint8_t>(*read.revision);
  function.bus = static_cast<std::uint16_t>(domainNumber * 256 + entry.address.bus);
  function.device = entry.address.device;
  function.function = entry.address.function;
  return function;
}

std::uint32_t SysfsMachine::driverIndex(const SysfsTree& tree, const SysfsTree::Entry& entry) {
  const std::string& name = entry.function.driver;
  if (name.empty()) return 0;
  const auto [known, added] =
      driverIndexes.try_emplace(toLower(name), static_cast<std::uint32_t>(drivers.size()));
  if (added) {
    const auto version = tree.driverVersion(entry.name, name);
    drivers.push_back({name, version.value_or(running ? kernelRelease().text : std::string())});
  }
  return known->second;
}

std::optional<RegistryValue> SysfsMachine::deviceProperty(std::size_t device,
                                                          DWORD property) const {
  const Function& function = functions[device];
  switch (property) {
    case SPDRP_HARDWAREID:
      return RegistryValue{REG_MULTI_SZ, hardwareIds(function)};
    case SPDRP_DEVICEDESC:
      return textValue(description(device));
    case SPDRP_LOCATION_INFORMATION:
      return textValue(location(function));
    case SPDRP_DRIVER:
      if (function.driver == 0) return std::nullopt;
      return textValue(std::string(kDriverClass).append(drivers[function.driver].name));
    default:
      return std::nullopt;
  }
}

std::string SysfsMachine::hardwareIds(const Function& function) {
  const std::string model = pciModelId(function.identifiers.vendor, function.identifiers.device);
  const std::string board = pciHardwareId(function.identifiers);
  std::string ids;
  if (function.revision) {
    ids.append(board).append("&REV_");
    appendHex(ids, *function.revision, 2);
    ids += '\0';
  }
  ids.append(board) += '\0';
  ids.append(model).append("&CC_");
  appendHex(ids, function.classCode, 6);
  ids += '\0';
  ids.append(model).append("&CC_");
  appendHex(ids, function.classCode >> 8, 4);  // without the programming interface
  ids += '\0';
  ids += '\0';
  return ids;
}

std::string SysfsMachine::location(const Function& function) {
  std::string text = "PCI bus ";
  text.append(std::to_string(function.bus)).append(", device ");
  text.append(std::to_string(function.device)).append(", function ");
  text.append(std::to_string(function.function));
  return text;
}

std::string_view SysfsMachine::description(std::size_t device) const {
  if (names.empty()) {
    std::vector<PciModel> models;
    models.reserve(functions.size());
    for (const Function& function : functions) {
      models.push_back({static_cast<std::uint16_t>(function.identifiers.vendor),
                        static_cast<std::uint16_t>(function.identifiers.device),
                        function.classCode});
    }
    const MappedFile list = installedPciIds();
    const std::vector<std::string_view> found = pciNames(list.text(), models);
    names.assign(found.begin(), found.end());
  }
  return names[device].empty() ? "PCI Device" : std::string_view(names[device]);
}

// The driver whose class key this is; null for any other path.
const SysfsMachine::Driver* SysfsMachine::driverOfKey(std::string_view path) const {
  for (const std::string_view part : {kClassKeys, kDriverClass}) {
    if (!equalIgnoringCase(path.substr(0, part.size()), part)) return nullptr;
    path.remove_prefix(part.size());
  }
  const auto entry = driverIndexes.find(toLower(path));
  return entry == driverIndexes.end() ? nullptr : &drivers[entry->second];
}

bool SysfsMachine::hasKey(std::string_view path) const {
  return driverOfKey(path) != nullptr || (running && equalIgnoringCase(path, kVersionKey));
}

std::optional<RegistryValue> SysfsMachine::value(std::string_view path,
                                                 std::string_view name) const {
  const std::string wanted = toLower(name);
  if (const Driver* const driver = driverOfKey(path)) {
    if (wanted != "driverversion" || driver->version.empty()) return std::nullopt;
    return textValue(driver->version);
  }
  if (!running || !equalIgnoringCase(path, kVersionKey)) return std::nullopt;
  if (wanted == "currentmajorversionnumber") return numberValue(kernelRelease().major);
  if (wanted == "currentminorversionnumber") return numberValue(kernelRelease().minor);
  return std::nullopt;
}

}  // namespace tolvanix::winapi
