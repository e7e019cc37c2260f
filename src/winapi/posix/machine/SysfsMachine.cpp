#include "winapi/posix/machine/SysfsMachine.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "text/Ascii.h"
#include "winapi/ClassKeys.h"
#include "winapi/posix/base/FileDescriptor.h"
#include "winapi/posix/base/Hex.h"
#include "winapi/posix/machine/SysfsFolder.h"

namespace tolvanix::winapi {
namespace {

constexpr char kDevicesFolder[] = "bus/pci/devices";
// The driver keys made for these devices: the driver's name below this class.
constexpr std::string_view kDriverClass = "pci\\";

struct DirectoryCloser {
  void operator()(DIR* folder) const { closedir(folder); }
};

std::string_view firstLine(std::string_view text) {
  return text.substr(0, text.find('\n'));
}

// What a function is, as far as its files tell.
struct Identity {
  std::optional<std::uint32_t> vendor;
  std::optional<std::uint32_t> device;
  std::optional<std::uint32_t> subVendor;
  std::optional<std::uint32_t> subDevice;
  std::optional<std::uint32_t> classCode;
  std::optional<std::uint32_t> revision;
  std::string driver;

  bool hasNumbers() const { return vendor && device && subVendor && subDevice && classCode; }
};

// "8086:0D57"
void readIdPair(std::string_view text, std::optional<std::uint32_t>& first,
                std::optional<std::uint32_t>& second) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return;
  first = readHex(text.substr(0, colon));
  second = readHex(text.substr(colon + 1));
}

// One read gives all but the revision, and the driver of most; lines are NAME=value.
Identity identityFromUevent(std::string_view text) {
  Identity identity;
  while (!text.empty()) {
    const std::string_view line = firstLine(text);
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view name = line.substr(0, equals);
    const std::string_view value = line.substr(equals + 1);
    if (name == "PCI_CLASS") identity.classCode = readHex(value);
    if (name == "PCI_ID") readIdPair(value, identity.vendor, identity.device);
    if (name == "PCI_SUBSYS_ID") readIdPair(value, identity.subVendor, identity.subDevice);
    if (name == "DRIVER") identity.driver = value;
  }
  return identity;
}

// "pci:v00008086d000029C0sv00001AF4sd00001100bc06sc00i00": fields of fixed widths.
void completeFromModalias(Identity& identity, std::string_view text) {
  if (!text.starts_with("pci:v") || text.size() < 53) return;
  const auto fill = [text](std::optional<std::uint32_t>& number, std::size_t at) {
    if (!number) number = readHex(text.substr(at, 8));
  };
  fill(identity.vendor, 5);
  fill(identity.device, 14);
  fill(identity.subVendor, 24);
  fill(identity.subDevice, 34);
  const auto base = readHex(text.substr(44, 2));
  const auto sub = readHex(text.substr(48, 2));
  const auto interface = readHex(text.substr(51, 2));
  if (!identity.classCode && base && sub && interface) {
    identity.classCode = *base << 16 | *sub << 8 | *interface;
  }
}

// Snapshots of a tree may lack `uevent`, which is a file of actions, and others.
void completeFromFiles(Identity& identity, SysfsFolder& folder) {
  if (identity.hasNumbers()) return;
  const auto fill = [&folder](std::optional<std::uint32_t>& number, const char* file) {
    if (!number) number = folder.number(file);
  };
  fill(identity.vendor, "vendor");
  fill(identity.device, "device");
  fill(identity.subVendor, "subsystem_vendor");
  fill(identity.subDevice, "subsystem_device");
  fill(identity.classCode, "class");
  if (identity.hasNumbers()) return;
  char buffer[kSysfsPage];
  if (const auto modalias = folder.line("modalias", buffer))
    completeFromModalias(identity, *modalias);
}

// A snapshot, or a kernel before 4.10, may lack the `revision` file: then it is byte 8 of the
// configuration space (PCI Local Bus 3.0, 6.1). No more of that is read: each byte asks the device.
std::optional<std::uint32_t> readRevision(SysfsFolder& folder) {
  const auto revision = folder.number("revision");
  if (revision) return revision;
  char start[9];
  const auto config = folder.text("config", start);
  if (!config || config->size() < sizeof start) return std::nullopt;
  return static_cast<std::uint8_t>(config->back());
}

Identity readIdentity(SysfsFolder& folder) {
  char buffer[kSysfsPage];
  const auto uevent = folder.text("uevent", buffer);
  Identity identity;
  if (uevent) identity = identityFromUevent(*uevent);
  completeFromFiles(identity, folder);
  identity.revision = readRevision(folder);
  if (identity.driver.empty()) identity.driver = folder.linkedName("driver");
  return identity;
}

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

// Why a function's files do not even give its vendor and device.
std::string problemOf(int devices, const std::string& function) {
  const FileDescriptor folder(openat(devices, function.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (folder.get() < 0) return std::strerror(errno);
  return "its vendor and device cannot be read";
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

SysfsMachine::SysfsMachine(const std::string& rootFolder, bool isRunning)
    : root(rootFolder),
      running(isRunning),
      tree(open(rootFolder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
      drivers(1) {
  scan();
}

// "0000:00:1f.3"; only names as the kernel writes them are addresses.
std::optional<SysfsMachine::Address> SysfsMachine::parseAddress(std::string_view name) {
  if (name.size() < 12) return std::nullopt;
  const std::size_t domainSize = name.size() - 8;
  const std::string_view rest = name.substr(domainSize);
  if (rest[0] != ':' || rest[3] != ':' || rest[6] != '.') return std::nullopt;
  const auto domain = readHex(name.substr(0, domainSize));
  const auto bus = readHex(rest.substr(1, 2));
  const auto device = readHex(rest.substr(4, 2));
  const auto function = readHex(rest.substr(7, 1));
  if (!domain || !bus || !device || !function) return std::nullopt;
  return Address{*domain, static_cast<std::uint8_t>(*bus), static_cast<std::uint8_t>(*device),
                 static_cast<std::uint8_t>(*function)};
}

void SysfsMachine::scan() {
  const int devices =
      tree.get() < 0 ? -1 : openat(tree.get(), kDevicesFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, DirectoryCloser> folder(devices < 0 ? nullptr : fdopendir(devices));
  if (folder == nullptr) {
    report("", std::strerror(errno));
    if (devices >= 0) close(devices);
    return;
  }
  std::vector<Entry> entries = listEntries(folder.get());
  for (Entry& entry : entries) readEntry(devices, entry);
  addFunctions(devices, entries);
}

void SysfsMachine::report(const std::string& function, const std::string& problem) const {
  std::string place = root + '/' + kDevicesFolder;
  if (!function.empty()) place.append("/").append(function);
  reportMachine(place, 0, problem);
}

// The functions that the folder names, by address.
std::vector<SysfsMachine::Entry> SysfsMachine::listEntries(DIR* folder) const {
  std::vector<Entry> entries;
  errno = 0;
  while (const dirent* const found = readdir(folder)) {
    const std::optional<Address> address = parseAddress(found->d_name);
    if (address) entries.push_back({found->d_name, *address});
    errno = 0;
  }
  if (errno != 0) report("", std::strerror(errno));
  std::sort(entries.begin(), entries.end(),
            [](const Entry& left, const Entry& right) { return left.address < right.address; });
  return entries;
}

void SysfsMachine::readEntry(int devices, Entry& entry) const {
  SysfsFolder folder(devices, entry.name);
  Identity identity = readIdentity(folder);
  if (!identity.vendor || !identity.device) {
    report(entry.name, problemOf(devices, entry.name));
    return;
  }
  Function function;
  function.model.vendor = static_cast<std::uint16_t>(*identity.vendor);
  function.model.device = static_cast<std::uint16_t>(*identity.device);
  function.model.classCode = identity.classCode.value_or(0) & 0xFFFFFF;
  function.subVendor = static_cast<std::uint16_t>(identity.subVendor.value_or(0));
  function.subDevice = static_cast<std::uint16_t>(identity.subDevice.value_or(0));
  if (identity.revision) function.revision = static_cast<std::uint8_t>(*identity.revision);
  function.device = entry.address.device;
  function.function = entry.address.function;
  entry.function = function;
  entry.driver = std::move(identity.driver);
}

void SysfsMachine::addFunctions(int devices, const std::vector<Entry>& entries) {
  std::set<std::uint32_t> domains;
  for (const Entry& entry : entries) {
    if (entry.function) domains.insert(domains.end(), entry.address.domain);
  }
  const std::map<std::uint32_t, std::uint32_t> numbers = domainNumbers(domains);
  for (const Entry& entry : entries) {
    const auto number = numbers.find(entry.address.domain);
    if (!entry.function || number == numbers.end()) continue;
    Function& function = functions.emplace_back(*entry.function);
    function.bus = static_cast<std::uint16_t>(number->second * 256 + entry.address.bus);
    function.driver = driverIndex(devices, entry.name, entry.driver);
  }
  if (numbers.size() < domains.size()) {
    report("", "more than 256 PCI domains; the functions of " +
                   std::to_string(domains.size() - numbers.size()) + " are left out");
  }
}

std::uint32_t SysfsMachine::driverIndex(int devices, std::string_view function,
                                        std::string_view name) {
  if (name.empty()) return 0;
  const auto [entry, added] =
      driverIndexes.try_emplace(toLower(name), static_cast<std::uint32_t>(drivers.size()));
  if (added) {
    const std::string text(name);
    drivers.push_back({text, driverVersion(devices, function, text)});
  }
  return entry->second;
}

// The version of the driver's module, which a built-in driver often has under its own name, with
// '_' for '-' as in all module names.
std::string SysfsMachine::driverVersion(int devices, std::string_view function,
                                        const std::string& name) const {
  char buffer[kSysfsPage];
  auto version = SysfsFolder(devices, function).line("driver/module/version", buffer);
  if (!version) {
    std::string module = name;
    std::replace(module.begin(), module.end(), '-', '_');
    version = SysfsFolder(tree.get(), "module/" + module).line("version", buffer);
  }
  if (version) return std::string(*version);
  return running ? kernelRelease().text : std::string();
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
  std::string ids;
  ids.reserve(160);
  const auto addModel = [&ids, &function] {
    ids += "PCI\\VEN_";
    appendHex(ids, function.model.vendor, 4);
    ids += "&DEV_";
    appendHex(ids, function.model.device, 4);
  };
  for (const bool withRevision : {true, false}) {
    if (withRevision && !function.revision) continue;
    addModel();
    ids += "&SUBSYS_";
    appendHex(ids, function.subDevice, 4);
    appendHex(ids, function.subVendor, 4);
    if (withRevision) {
      ids += "&REV_";
      appendHex(ids, *function.revision, 2);
    }
    ids += '\0';
  }
  for (const unsigned digits : {6U, 4U}) {  // with and without the programming interface
    addModel();
    ids += "&CC_";
    appendHex(ids, function.model.classCode >> (24 - 4 * digits), digits);
    ids += '\0';
  }
  ids += '\0';
  return ids;
}

std::string SysfsMachine::location(const Function& function) {
  std::string text;
  text.reserve(48);
  text += "PCI bus ";
  text += std::to_string(function.bus);
  text += ", device ";
  text += std::to_string(function.device);
  text += ", function ";
  text += std::to_string(function.function);
  return text;
}

std::string_view SysfsMachine::description(std::size_t device) const {
  if (names.empty()) {
    std::vector<PciModel> models;
    models.reserve(functions.size());
    for (const Function& function : functions) models.push_back(function.model);
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
