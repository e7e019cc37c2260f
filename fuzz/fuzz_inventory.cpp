// The inventory of a computer that a registry export describes ('r' before it), or a sysfs tree.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <set>

#include "app/KivWrapper.h"
#include "fuzz.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/machine/PresentedMachine.h"
#include "winapi/posix/machine/RegistryMachine.h"
#include "winapi/posix/machine/SysfsMachine.h"
#include "winapi/winapi.h"

// In place of the list that this computer has: reading that takes milliseconds.
tolvanix::winapi::MappedFile installedList() __asm__(
    "__wrap__ZN8tolvanix6winapi15installedPciIdsEv");

namespace tolvanix::fuzz {

namespace {

using winapi::Machine;
using Numbers = std::map<std::string, std::string>;  // attributes of a device

// A function of a sysfs tree, with the contents of its files.
struct SysfsFunction {
  std::string name;
  std::map<std::string, std::string> files;
};

}  // namespace

namespace naive {

namespace {

// The text of a value, as much of it as a record holds.
std::string recordText(const std::string& text) {
  return upToZero(text).substr(0, 199);
}

std::optional<std::string> property(const Machine& machine, std::size_t device, DWORD code) {
  const auto value = machine.deviceProperty(device, code);
  return value ? std::optional(upToZero(value->data)) : std::nullopt;
}

std::vector<std::string> tokens(const std::string& text, char separator) {
  std::vector<std::string> found;
  for (std::string_view rest = text; !rest.empty();) found.emplace_back(takePart(rest, separator));
  found.resize(std::max<std::size_t>(found.size(), 3));
  return found;
}

// The digits that the text begins with, of which the last 16 bits count.
unsigned hexNumber(const std::string& text) {
  const std::string digits = text.substr(0, text.find_first_not_of("0123456789abcdefABCDEF"));
  const std::string last = digits.substr(digits.size() - std::min<std::size_t>(digits.size(), 4));
  return last.empty() ? 0 : static_cast<unsigned>(std::stoul(last, nullptr, 16));
}

std::string hex(unsigned number) {
  char text[9] = "";
  std::snprintf(text, sizeof text, "%04X", number);
  return text;
}

std::string padded(unsigned number) {
  const std::string digits = std::to_string(number);
  return std::string(4 - std::min<std::size_t>(digits.size(), 4), '0') + digits;
}

void addIdentifiers(const std::string& hardwareId, Numbers& found) {
  const auto fields = tokens(tokens(hardwareId, '\\')[1], '&');
  const auto after = [](const std::string& text, std::size_t length) {
    return text.size() > length ? text.substr(length) : "";
  };
  found["vendorID"] = hex(hexNumber(after(fields[0], 4)));
  found["deviceID"] = hex(hexNumber(after(fields[1], 4)));
  const std::string subsystem = tokens(fields[2], '_')[1];
  const bool isWhole = subsystem.size() > 4;
  found["subDeviceID"] = hex(isWhole ? hexNumber(subsystem.substr(0, 4)) : 0);
  found["subVendorID"] = hex(isWhole ? hexNumber(subsystem.substr(4)) : 0);
}

void addPlace(std::string location, Numbers& found) {
  for (const char* const name : {"bus", "device", "function"}) {
    location.erase(0, std::min(location.find_first_of("0123456789"), location.size()));
    unsigned number = 0;
    for (; !location.empty() && location[0] >= '0' && location[0] <= '9'; location.erase(0, 1)) {
      number = (number * 10 + static_cast<unsigned>(location[0] - '0')) % 0x10000;
    }
    found[name] = padded(number);
  }
}

std::string driverVersion(const Machine& machine, const std::string& driver) {
  const std::string key = R"(SYSTEM\CurrentControlSet\Control\Class\)" + driver;
  const auto value = key.size() < 256 ? machine.value(key, "DriverVersion") : std::nullopt;
  return value && value->data.size() <= 64 ? upToZero(value->data) : "";
}

std::string shownText(const std::string& text) {
  return attributeValue(unescaped(widen(text)));
}

Element deviceElement(const Machine& machine, std::size_t device, const std::string& hardwareId) {
  Element element = {"Device", {}, "", {}};
  addIdentifiers(recordText(hardwareId), element.attributes);
  addPlace(property(machine, device, SPDRP_LOCATION_INFORMATION).value_or(""), element.attributes);
  auto given = property(machine, device, SPDRP_FRIENDLYNAME);
  if (!given) given = property(machine, device, SPDRP_DEVICEDESC);
  const std::string name = recordText(given.value_or("default"));
  if (!name.empty()) element.attributes["display"] = shownText(name);

  const auto driver = property(machine, device, SPDRP_DRIVER);
  const std::string version = driver ? driverVersion(machine, *driver) : "";
  const std::string ending = lower(trimmed("x" + name, " \t\n\v\f\r"));
  Element& application = element.children.emplace_back(Element{"Application", {}, "", {}});
  application.attributes["componentType"] = "DRVR";
  application.attributes["version"] = shownText(version.empty() ? "0" : version);
  application.attributes["display"] =
      shownText(name + (ending.ends_with("driver") ? "" : " Driver"));
  return element;
}

// The document of the devices whose first hardware ID is that of a PCI device; of those in one
// place with the same numbers the first.
Element inventoryOf(const Machine& machine) {
  Element document = {"SVMInventory", {{"lang", "en"}}, "", {}};
  OSVERSIONINFOA version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (GetVersionExA(&version) == FALSE) {
    document.children.push_back(statusElement(19));
    return document;
  }
  std::set<Numbers> seen;
  for (std::size_t i = 0; i < machine.deviceCount(); ++i) {
    const auto hardwareId = property(machine, i, SPDRP_HARDWAREID);
    if (!hardwareId || !hardwareId->starts_with("PCI\\")) continue;
    const Element element = deviceElement(machine, i, *hardwareId);
    auto numbers = element.attributes;
    numbers.erase("display");
    if (seen.insert(numbers).second) document.children.push_back(element);
  }
  return document;
}

// The whole text as a number of up to eight digits.
std::optional<unsigned> wholeHex(const std::string& text) {
  const bool isNumber = !text.empty() && text.size() <= 8 &&
                        text.find_first_not_of("0123456789abcdefABCDEF") == text.npos;
  return isNumber ? std::optional(static_cast<unsigned>(std::stoul(text, nullptr, 16)))
                  : std::nullopt;
}

// One half of a pair of numbers: from its line in `uevent`, else from a file of its own, else from
// its place in `modalias`.
std::optional<unsigned> sysfsNumber(SysfsFunction function, const std::string& pair, bool isSecond,
                                    const char* file, std::size_t place) {
  const auto firstLine = [&function](const char* name) {
    std::string_view text = function.files[name];
    return std::string(takePart(text, '\n'));
  };
  std::optional<unsigned> number;
  for (std::string_view rest = function.files["uevent"]; !rest.empty();) {
    const std::string line(takePart(rest, '\n'));
    const std::size_t colon = line.find(':', pair.size());
    if (!line.starts_with(pair) || colon == line.npos) continue;
    number =
        wholeHex(isSecond ? line.substr(colon + 1) : line.substr(pair.size(), colon - pair.size()));
  }
  const std::string own = firstLine(file);
  if (!number && own.starts_with("0x")) number = wholeHex(own.substr(2));
  const std::string alias = firstLine("modalias");
  const bool isWhole = alias.starts_with("pci:v") && alias.size() >= 53;
  if (!number && isWhole) number = wholeHex(alias.substr(place, 8));
  return number;
}

// 0000:00:1f.3: domain, bus, device and function.
std::optional<std::vector<unsigned>> address(const std::string& name) {
  if (name.size() < 12) return std::nullopt;
  const std::string rest = name.substr(name.size() - 8);
  const auto domain = wholeHex(name.substr(0, name.size() - 8));
  const auto bus = wholeHex(rest.substr(1, 2));
  const auto device = wholeHex(rest.substr(4, 2));
  const auto function = wholeHex(rest.substr(7, 1));
  if (rest[0] != ':' || rest[3] != ':' || rest[6] != '.') return std::nullopt;
  if (!domain || !bus || !device || !function) return std::nullopt;
  return std::vector{*domain, *bus, *device, *function};
}

// What the document says of the functions, in the order of their addresses; none when two have one
// address.
std::optional<std::vector<Numbers>> sysfsNumbers(const std::vector<SysfsFunction>& functions) {
  std::map<std::vector<unsigned>, Numbers> found;
  std::map<unsigned, unsigned> domains;
  for (const SysfsFunction& each : functions) {
    const auto place = address(each.name);
    const auto vendor = sysfsNumber(each, "PCI_ID=", false, "vendor", 5);
    const auto device = sysfsNumber(each, "PCI_ID=", true, "device", 14);
    if (!place || !vendor || !device) continue;
    if (found.contains(*place)) return std::nullopt;
    const auto part = [](std::optional<unsigned> number) {
      return hex(number.value_or(0) & 0xFFFF);
    };
    found[*place] = {
        {"vendorID", part(vendor)},
        {"deviceID", part(device)},
        {"subVendorID", part(sysfsNumber(each, "PCI_SUBSYS_ID=", false, "subsystem_vendor", 24))},
        {"subDeviceID", part(sysfsNumber(each, "PCI_SUBSYS_ID=", true, "subsystem_device", 34))}};
    domains[(*place)[0]] = 0;
  }
  // A domain above 255 has the first number that no other one has.
  unsigned next = 0;
  for (auto& [domain, number] : domains) {
    while (domain > 255 && domains.contains(next)) ++next;
    number = domain > 255 ? next++ : domain;
  }
  std::vector<Numbers> numbers;
  for (auto& [place, attributes] : found) {
    attributes["bus"] = padded(domains[place[0]] * 256 + place[1]);
    attributes["device"] = padded(place[2]);
    attributes["function"] = padded(place[3]);
    numbers.push_back(attributes);
  }
  return numbers;
}

}  // namespace
}  // namespace naive

namespace {

constexpr std::string_view kNames =
    "1DE4  A vendor\n\t1502  A network adapter\n\t1503  Another driver \n1de5  Another\n"
    "\t1041  A <\"card\"> & more\nC 01  Storage\n\t06  SATA\nC 02  Network\n\t00  Ethernet\n";

// A sysfs tree of up to three functions, made for one input and removed after it.
class Tree {
 public:
  // For each function its name, the name of its driver and the contents of its files; those of the
  // driver's module come last.
  explicit Tree(std::string_view input) {
    for (int i = 0; i < 3 && !input.empty(); ++i) addFunction(takePart(input, '\x1D'));
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  ~Tree() {
    for (; !made.empty(); made.pop_back()) {
      if (unlink(made.back().c_str()) != 0) rmdir(made.back().c_str());
    }
  }

  // In the current folder.
  static const std::string& root() {
    static const std::string path = [] {
      std::filesystem::create_directories("sys/bus/pci/devices");
      std::filesystem::create_directories("sys/module");
      return "sys";
    }();
    return path;
  }
  const std::vector<SysfsFunction>& content() const { return functions; }

 private:
  static bool isName(std::string_view name) {
    return !name.empty() && name.size() < 100 && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
  }

  bool addFolder(const std::string& path) {
    if (mkdir((root() + path).c_str(), 0755) != 0) return false;
    made.push_back(root() + path);
    return true;
  }

  void addFile(const std::string& path, std::string_view bytes) {
    if (bytes.empty()) return;
    made.push_back(root() + path);
    const int file = open(made.back().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0 || write(file, bytes.data(), bytes.size()) < 0) std::abort();
    close(file);
  }

  void addFunction(std::string_view input) {
    const std::string name(takePart(input));
    const std::string driver(takePart(input));
    const std::string folder = "/bus/pci/devices/" + name;
    if (!isName(name) || !addFolder(folder)) return;
    SysfsFunction& function = functions.emplace_back(SysfsFunction{name, {}});
    for (const char* const file : {"uevent", "vendor", "device", "subsystem_vendor", "class",
                                   "subsystem_device", "revision", "modalias", "config"}) {
      function.files[file] = takePart(input);
      addFile(folder + '/' + file, function.files[file]);
    }
    if (!isName(driver)) return;
    const std::string link = root() + folder + "/driver";
    if (symlink(("../drivers/" + driver).c_str(), link.c_str()) == 0) made.push_back(link);
    if (addFolder("/module/" + driver)) addFile("/module/" + driver + "/version", input);
  }

  std::vector<SysfsFunction> functions;
  std::vector<std::string> made;
};

int takeInventory() {
  std::string program = "tolvanix", command = "-i", debug = "-e", none = "/dev/null";
  char* arguments[] = {program.data(), command.data(), debug.data(), none.data()};
  return KivWrapper().runKiv(std::size(arguments), arguments);
}

// Returns the document.
Element expectInventoryOf(std::unique_ptr<Machine> machine) {
  const Machine& presented = *machine;
  winapi::exchangePresentedMachine(std::move(machine));
  const Element expected = naive::inventoryOf(presented);
  const int status = takeInventory();
  Element found = readDocument(takeOutput());
  expectEqual("inventory", found, expected);
  const bool failed = !expected.children.empty() && expected.children[0].name == "SPStatus";
  expectEqual("status", status, failed ? 19 : 0);
  return found;
}

}  // namespace

void inventory(std::string_view input) {
  const InScratchFolder current;  // without a filter of vendors in it
  if (input.starts_with('r')) {
    static const MemoryFile file;
    file.write(input.substr(1));
    expectInventoryOf(std::make_unique<winapi::RegistryMachine>(file.name()));
  } else {
    const Tree tree(input);
    const Element document =
        expectInventoryOf(std::make_unique<winapi::SysfsMachine>(Tree::root(), false));
    std::vector<Numbers> found;
    for (const Element& device : document.children) {
      found.push_back(device.attributes);
      found.back().erase("display");
    }
    const auto expected = naive::sysfsNumbers(tree.content());
    if (expected) expectEqual("numbers of a tree", found, *expected);
  }
}

}  // namespace tolvanix::fuzz

tolvanix::winapi::MappedFile installedList() {
  static const tolvanix::fuzz::MemoryFile file;
  file.write(tolvanix::fuzz::kNames);
  return tolvanix::winapi::MappedFile(file.name().c_str());
}
