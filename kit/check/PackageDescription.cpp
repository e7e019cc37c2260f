#include "check/PackageDescription.h"

#include <cstdint>
#include <optional>
#include <set>
#include <utility>

#include "app/SPException.h"
#include "check/Findings.h"
#include "common/Files.h"
#include "common/Outcome.h"
#include "text/Conversion.h"
#include "text/HardwareId.h"
#include "text/Hex.h"
#include "validation/Xml.h"
#include "xml/SPXMLObject.h"

namespace tolvanix::kit {

namespace {

// Each is looked for in every INF file. The size holds that many by far.
constexpr std::size_t kMostDevices = 10'000;
constexpr std::uint64_t kLargestDescription = std::uint64_t{4} << 20;

std::string attribute(const sample::XmlElement& element, std::u16string_view name) {
  return narrow(element.attribute(name));
}

std::optional<std::string> hardwareIdOf(const sample::XmlElement& device) {
  const auto number = [&device](std::u16string_view name) {
    return readHex(attribute(device, name));
  };
  const auto vendor = number(u"vendorID");
  const auto model = number(u"deviceID");
  const auto subDevice = number(u"subDeviceID");
  const auto subVendor = number(u"subVendorID");
  if (!vendor || !model || !subDevice || !subVendor) return std::nullopt;
  return pciHardwareId({*vendor, *model, *subDevice, *subVendor});
}

sample::XmlElement parse(const std::string& file) {
  readFile(file, kLargestDescription);  // for its complaints
  SPXMLObject text;
  text.loadXMLFile(SPString(file));
  auto root = sample::parseXml(text.getXML());
  if (!root) throw BadInput(file + ": this is not XML");
  return std::move(*root);
}

}  // namespace

std::vector<PackageDevice> readDescription(const std::string& file, Findings& findings) {
  const sample::XmlElement root = parse(file);
  const sample::XmlElement* const listed = root.child(u"SupportedDevices");
  if (listed == nullptr || listed->children.empty()) {
    findings.error(file, "it lists no device", "list them under SupportedDevices (sdk/README.md)");
    return {};
  }
  if (listed->children.size() > kMostDevices) {
    throw BadInput(file + ": it lists more than " + std::to_string(kMostDevices) + " devices");
  }
  std::vector<PackageDevice> devices;
  std::set<std::string> known;
  for (const sample::XmlElement& element : listed->children) {
    const auto hardwareId = hardwareIdOf(element);
    const std::string version = attribute(element, u"version");
    if (!hardwareId || version.empty()) {
      findings.error(file, "a device lacks its version or one of the four identifiers",
                     "give each device all of them, the identifiers in hexadecimal");
    } else if (!known.insert(*hardwareId).second) {
      findings.warning(file, *hardwareId + " is listed more than once", "keep one of them");
    } else {
      devices.push_back({*hardwareId, version});
    }
  }
  return devices;
}

}  // namespace tolvanix::kit
