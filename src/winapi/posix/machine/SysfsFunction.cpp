#include "winapi/posix/machine/SysfsFunction.h"

#include <algorithm>

#include "text/Hex.h"

namespace tolvanix::winapi {
namespace {

bool hasIdentity(const SysfsFunction& function) {
  return function.vendor && function.device && function.subVendor && function.subDevice &&
         function.classCode;
}

// "1DE0:0D57"
void readIdPair(std::string_view text, std::optional<std::uint32_t>& first,
                std::optional<std::uint32_t>& second) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return;
  first = readHex(text.substr(0, colon));
  second = readHex(text.substr(colon + 1));
}

// One read gives all but the revision, and the driver of most; lines are NAME=value.
SysfsFunction functionFromUevent(std::string_view text) {
  SysfsFunction function;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view name = line.substr(0, equals);
    const std::string_view value = line.substr(equals + 1);
    if (name == "PCI_CLASS") function.classCode = readHex(value);
    if (name == "PCI_ID") readIdPair(value, function.vendor, function.device);
    if (name == "PCI_SUBSYS_ID") readIdPair(value, function.subVendor, function.subDevice);
    if (name == "DRIVER") function.driver = value;
  }
  return function;
}

// "pci:v00001DE0d000029C0sv00001AF4sd00001100bc06sc00i00": fields of fixed widths.
void completeFromModalias(SysfsFunction& function, std::string_view text) {
  if (!text.starts_with("pci:v") || text.size() < 53) return;
  const auto fill = [text](std::optional<std::uint32_t>& number, std::size_t at) {
    if (!number) number = readHex(text.substr(at, 8));
  };
  fill(function.vendor, 5);
  fill(function.device, 14);
  fill(function.subVendor, 24);
  fill(function.subDevice, 34);
  const auto base = readHex(text.substr(44, 2));
  const auto sub = readHex(text.substr(48, 2));
  const auto interface = readHex(text.substr(51, 2));
  if (!function.classCode && base && sub && interface) {
    function.classCode = *base << 16 | *sub << 8 | *interface;
  }
}

// Snapshots of a tree may lack `uevent`, which is a file of actions, and others.
void completeFromFiles(SysfsFunction& function, SysfsFolder& folder) {
  if (hasIdentity(function)) return;
  const auto fill = [&folder](std::optional<std::uint32_t>& number, const char* file) {
    if (!number) number = folder.number(file);
  };
  fill(function.vendor, "vendor");
  fill(function.device, "device");
  fill(function.subVendor, "subsystem_vendor");
  fill(function.subDevice, "subsystem_device");
  fill(function.classCode, "class");
  if (hasIdentity(function)) return;
  char buffer[kSysfsPage];
  if (const auto modalias = folder.line("modalias", buffer))
    completeFromModalias(function, *modalias);
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

}  // namespace

std::optional<PciAddress> parsePciAddress(std::string_view name) {
  if (name.size() < 12) return std::nullopt;
  const std::size_t domainSize = name.size() - 8;
  const std::string_view rest = name.substr(domainSize);
  if (rest[0] != ':' || rest[3] != ':' || rest[6] != '.') return std::nullopt;
  const auto domain = readHex(name.substr(0, domainSize));
  const auto bus = readHex(rest.substr(1, 2));
  const auto device = readHex(rest.substr(4, 2));
  const auto function = readHex(rest.substr(7, 1));
  if (!domain || !bus || !device || !function) return std::nullopt;
  return PciAddress{*domain, static_cast<std::uint8_t>(*bus), static_cast<std::uint8_t>(*device),
                    static_cast<std::uint8_t>(*function)};
}

SysfsFunction readSysfsFunction(SysfsFolder& folder) {
  char buffer[kSysfsPage];
  const auto uevent = folder.text("uevent", buffer);
  SysfsFunction function;
  if (uevent) function = functionFromUevent(*uevent);
  completeFromFiles(function, folder);
  function.revision = readRevision(folder);
  if (function.driver.empty()) function.driver = folder.linkedName("driver");
  return function;
}

}  // namespace tolvanix::winapi
