#include "check/DeviceCheck.h"

#include "check/Findings.h"
#include "check/InfList.h"
#include "text/Conversion.h"
#include "validation/Version.h"

namespace tolvanix::kit {

namespace {

void checkDevice(const PackageDevice& device, InfList& infs, Findings& findings) {
  const InfChoice choice = infs.choose(device.hardwareId);
  if (choice.taken == nullptr) {
    findings.error(kDescription, device.hardwareId + " is in no INF file",
                   "list it in one, or take the device out");
    return;
  }
  if (choice.better != nullptr) {
    findings.error(choice.taken->name,
                   "it is taken for " + device.hardwareId + " before " + choice.better->name +
                       ", which lists the ID more exactly",
                   "list more of the ID, or give the file a name after the other's");
    return;
  }
  const std::string& version = choice.taken->driverVersion;
  if (!version.empty() && sample::compareVersions(widen(version), widen(device.version)) != 0) {
    findings.error(kDescription,
                   "it promises version " + device.version + " for " + device.hardwareId +
                       ", and " + choice.taken->name + " brings " + version,
                   "make the version and the file's DriverVer the same");
  }
}

}  // namespace

void checkDevices(const std::vector<PackageDevice>& devices, InfList& infs, Findings& findings) {
  for (const PackageDevice& device : devices) checkDevice(device, infs, findings);
}

}  // namespace tolvanix::kit
