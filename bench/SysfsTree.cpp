#include "SysfsTree.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "support/Files.h"

namespace tolvanix::test {
namespace {

namespace fs = std::filesystem;

struct SysfsFunction {
  std::string address;  // "0000:00:1f.3"
  unsigned vendor = 0;
  unsigned device = 0;
  unsigned subVendor = 0;
  unsigned subDevice = 0;
  unsigned classCode = 0;
  unsigned revision = 0;
  std::string driver;  // empty for none
};

[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...) {
  char text[400];
  va_list arguments;
  va_start(arguments, format);
  const int size = std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return {text, static_cast<std::size_t>(size)};
}

// The standard header of the configuration space, type 0 (PCI Local Bus 3.0, 6.1).
std::string configSpace(const SysfsFunction& f) {
  std::string bytes(64, '\0');
  const auto put = [&bytes](std::size_t at, unsigned value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(value >> 8 * i & 0xFF);
  };
  put(0x00, f.vendor, 2);
  put(0x02, f.device, 2);
  put(0x08, f.revision, 1);
  put(0x09, f.classCode, 3);
  put(0x2C, f.subVendor, 2);
  put(0x2E, f.subDevice, 2);
  return bytes;
}

std::string resources() {
  std::string lines;
  for (int i = 0; i < 13; ++i) {
    lines += "0x0000000000000000 0x0000000000000000 0x0000000000000000\n";
  }
  return lines;
}

struct Model {
  unsigned vendor;
  unsigned firstDevice;
  unsigned devices;  // how many device numbers from the first one are taken
  unsigned classCode;
  const char* driver;
};
constexpr std::array<Model, 8> kModels = {{
    {0x8086, 0x1500, 0x90, 0x020000, "e1000e"},
    {0x8086, 0x9D00, 0x80, 0x060400, "pcieport"},
    {0x10DE, 0x1B80, 0x80, 0x030000, "nouveau"},
    {0x1022, 0x1440, 0x60, 0x060000, ""},
    {0x14E4, 0x1600, 0xA0, 0x020000, "tg3"},
    {0x1000, 0x0050, 0x50, 0x010700, "mpt3sas"},
    {0x1AF4, 0x1040, 0x20, 0x010000, "virtio-pci"},
    {0x1DE0, 0x0000, 0x1000, 0x0C0330, "xhci_hcd"},
}};

// The one of most computers, some of virtual computers, and that of a storage controller with a
// domain of its own.
constexpr std::array<unsigned, 4> kDomains = {0, 0x100, 0xFFFF, 0x10000};

void addSysfsDriver(const fs::path& root, const std::string& driver, const std::string& version) {
  const fs::path folder = root / "bus/pci/drivers" / driver;
  fs::create_directories(folder);
  fs::create_directories(root / "module" / driver);
  fs::create_directory_symlink("../../../../module/" + driver, folder / "module");
  writeFile(root / "module" / driver / "version", version + '\n');
}

void addSysfsFunction(const fs::path& root, const SysfsFunction& f) {
  const std::string domain = f.address.substr(0, f.address.size() - 8);
  const std::string place = formatted("devices/pci%s:00/%s", domain.c_str(), f.address.c_str());
  const fs::path folder = root / place;
  const std::string modalias =
      formatted("pci:v%08Xd%08Xsv%08Xsd%08Xbc%02Xsc%02Xi%02X", f.vendor, f.device, f.subVendor,
                f.subDevice, f.classCode >> 16, f.classCode >> 8 & 0xFF, f.classCode & 0xFF);
  std::string uevent =
      formatted("PCI_CLASS=%X\nPCI_ID=%04X:%04X\nPCI_SUBSYS_ID=%04X:%04X\nPCI_SLOT_NAME=%s\n",
                f.classCode, f.vendor, f.device, f.subVendor, f.subDevice, f.address.c_str());
  if (!f.driver.empty()) uevent.insert(0, formatted("DRIVER=%s\n", f.driver.c_str()));
  uevent.append("MODALIAS=").append(modalias).append("\n");
  writeFile(folder / "vendor", formatted("0x%04x\n", f.vendor));
  writeFile(folder / "device", formatted("0x%04x\n", f.device));
  writeFile(folder / "class", formatted("0x%06x\n", f.classCode));
  writeFile(folder / "revision", formatted("0x%02x\n", f.revision));
  writeFile(folder / "subsystem_vendor", formatted("0x%04x\n", f.subVendor));
  writeFile(folder / "subsystem_device", formatted("0x%04x\n", f.subDevice));
  writeFile(folder / "irq", "0\n");
  writeFile(folder / "resource", resources());
  writeFile(folder / "config", configSpace(f));
  writeFile(folder / "modalias", modalias + '\n');
  writeFile(folder / "uevent", uevent);
  if (!f.driver.empty()) {
    fs::create_directory_symlink("../../../bus/pci/drivers/" + f.driver, folder / "driver");
  }
  fs::create_directories(root / "bus/pci/devices");
  fs::create_directory_symlink("../../../" + place, root / "bus/pci/devices" / f.address);
}

}  // namespace

void makeSysfsTree(const fs::path& root, std::size_t count) {
  unsigned version = 0;
  for (const Model& model : kModels) {
    if (*model.driver == '\0') continue;
    ++version;
    addSysfsDriver(root, model.driver, formatted("%u.%u.0-k", version, version * 7));
  }
  for (std::size_t i = 0; i < count; ++i) {
    const auto number = static_cast<unsigned>(i);
    const Model& model = kModels[i % kModels.size()];
    SysfsFunction function;
    const unsigned bus = number >> 8;
    function.address = formatted("%04x:%02x:%02x.%x", kDomains[bus % kDomains.size()],
                                 bus / unsigned{kDomains.size()}, number >> 3 & 0x1F, number & 7);
    function.vendor = model.vendor;
    function.device = model.firstDevice + number / 8 * 7 % model.devices;
    function.subVendor = number % 3 == 0 ? model.vendor : 0x1028;
    function.subDevice = number * 5 & 0xFFFF;
    function.classCode = model.classCode;
    function.revision = number % 17;
    function.driver = model.driver;
    addSysfsFunction(root, function);
  }
}

}  // namespace tolvanix::test
