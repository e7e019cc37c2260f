#include "Validation.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "Version.h"
#include "Xml.h"

namespace tolvanix::sample {

namespace {

using View = std::u16string_view;

constexpr View kIdentifiers[] = {u"vendorID", u"deviceID", u"subDeviceID", u"subVendorID"};
using DeviceId = std::array<std::uint32_t, std::size(kIdentifiers)>;

// What package.xml says about one device.
struct Driver {
  std::u16string version;         // of the driver that the package brings
  std::u16string minimumVersion;  // of an installed driver that it can replace; empty for any
};

struct Package {
  std::u16string minimumSystem;  // empty for any
  std::map<DeviceId, Driver> drivers;
};

std::optional<std::uint32_t> hexadecimal(View digits) {
  if (digits.empty() || digits.size() > 8) return std::nullopt;
  std::uint32_t number = 0;
  for (const char16_t digit : digits) {
    const std::size_t value = View(u"0123456789ABCDEFabcdef").find(digit);
    if (value == View::npos) return std::nullopt;
    number = number * 16 + static_cast<std::uint32_t>(value < 16 ? value : value - 6);
  }
  return number;
}

std::optional<DeviceId> deviceIdOf(const XmlElement& device) {
  DeviceId id{};
  for (std::size_t i = 0; i < id.size(); ++i) {
    const auto number = hexadecimal(device.attribute(kIdentifiers[i]));
    if (!number) return std::nullopt;
    id[i] = *number;
  }
  return id;
}

// None when the text is no package description: broken, or without a device, or with one that
// lacks an identifier or the version.
std::optional<Package> readPackage(View text) {
  const auto root = parseXml(text);
  const XmlElement* const devices = root ? root->child(u"SupportedDevices") : nullptr;
  if (devices == nullptr) return std::nullopt;
  Package package;
  if (const XmlElement* const system = root->child(u"OperatingSystem"); system != nullptr) {
    package.minimumSystem = system->attribute(u"minimumVersion");
  }
  for (const XmlElement& device : devices->children) {
    const auto id = deviceIdOf(device);
    Driver driver;
    driver.version = device.attribute(u"version");
    driver.minimumVersion = device.attribute(u"minimumVersion");
    if (!id || driver.version.empty()) return std::nullopt;
    package.drivers.emplace(*id, std::move(driver));
  }
  if (package.drivers.empty()) return std::nullopt;
  return package;
}

class Document {
 public:
  // A finding; the types "qualification" and "hard" refuse the package.
  void addFinding(View type, const std::u16string& message) {
    const bool passed = type == u"info" || type == u"soft";
    findings += u"<Validation";
    appendAttribute(findings, u"type", type);
    appendAttribute(findings, u"result", passed ? u"true" : u"false");
    findings += u"><Message>";
    appendEscaped(findings, message);
    findings += u"</Message></Validation>";
  }

  // A device to update. Its place comes first: the program takes an attribute from where its name
  // first occurs in the element, and "device" begins "deviceID" too.
  void addDevice(const XmlElement& device, const XmlElement& installed, View newVersion) {
    devices += u"<Device";
    for (const View name : {u"bus", u"device", u"function"}) copyAttribute(device, name);
    for (const View name : kIdentifiers) copyAttribute(device, name);
    copyAttribute(device, u"display");
    devices += u"><Application";
    for (const View name : {u"componentType", u"version", u"display"}) {
      copyAttribute(installed, name);
    }
    devices += u"><Package";
    appendAttribute(devices, u"version", newVersion);
    devices += u"/></Application></Device>";
  }

  std::u16string text() const {
    std::u16string document = u"<SVMValidation lang=\"en\">";
    document += devices;
    document += findings;
    document += u"</SVMValidation>";
    return document;
  }

 private:
  void copyAttribute(const XmlElement& from, View name) {
    appendAttribute(devices, name, from.attribute(name));
  }

  std::u16string devices;
  std::u16string findings;
};

// "<device>: version <installed> <what>", the beginning of a finding about a device.
std::u16string about(const XmlElement& device, View installedVersion, View what) {
  std::u16string message(device.attribute(u"display"));
  message += u": version ";
  message += installedVersion;
  message += what;
  return message;
}

void judgeDevice(const XmlElement& device, const Driver& driver, Document& document) {
  static const XmlElement kNoApplication{u"Application", {{u"componentType", u"DRVR"}}, {}};
  const XmlElement* const application = device.child(u"Application");
  const XmlElement& installed = application != nullptr ? *application : kNoApplication;
  const View version = installed.attribute(u"version");
  const int order = compareVersions(version, driver.version);
  if (order == 0) {
    document.addFinding(u"info", about(device, version, u" is installed already."));
    return;
  }
  if (order > 0) {
    document.addFinding(
        u"soft", about(device, version, u" is newer than the package's ") + driver.version + u".");
    return;
  }
  // The inventory has version 0 for a device without a driver: there is nothing to replace.
  const bool hasDriver = compareVersions(version, u"0") != 0;
  if (hasDriver && compareVersions(version, driver.minimumVersion) < 0) {
    document.addFinding(u"hard",
                        about(device, version, u" is too old; the package needs at least ") +
                            driver.minimumVersion + u".");
  }
  document.addDevice(device, installed, driver.version);
}

void judgeSystem(const Package& package, const XmlElement& inventory, Document& document) {
  std::u16string version = u"0";
  if (const XmlElement* const system = inventory.child(u"OperatingSystem"); system != nullptr) {
    version = system->attribute(u"majorVersion");
    version += u'.';
    version += system->attribute(u"minorVersion");
  }
  if (compareVersions(version, package.minimumSystem) < 0) {
    document.addFinding(u"qualification", u"The operating system's version is " + version +
                                              u"; the package needs at least " +
                                              package.minimumSystem + u".");
  }
}

void judge(const Package& package, const XmlElement& inventory, Document& document) {
  judgeSystem(package, inventory, document);
  bool anyPresent = false;
  for (const XmlElement& device : inventory.children) {
    const auto id = deviceIdOf(device);
    const auto driver = id ? package.drivers.find(*id) : package.drivers.end();
    if (driver == package.drivers.end()) continue;
    anyPresent = true;
    judgeDevice(device, driver->second, document);
  }
  if (!anyPresent) {
    document.addFinding(u"qualification", u"The computer has no device that the package supports.");
  }
}

}  // namespace

std::u16string validate(std::u16string_view package, std::u16string_view inventory) {
  Document document;
  const auto rules = readPackage(package);
  const auto computer = parseXml(inventory);
  if (!rules) {
    document.addFinding(u"qualification", u"The package description cannot be read.");
  } else if (!computer) {
    document.addFinding(u"qualification", u"The inventory cannot be read.");
  } else {
    judge(*rules, *computer, document);
  }
  return document.text();
}

}  // namespace tolvanix::sample
