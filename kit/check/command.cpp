#include "check/command.h"

#include <string>
#include <vector>

#include "check/DeviceCheck.h"
#include "check/Findings.h"
#include "check/InfList.h"
#include "check/Library.h"
#include "check/PackageDescription.h"
#include "check/PackageFolder.h"
#include "check/SchemaCheck.h"
#include "check/Schemas.h"
#include "common/Outcome.h"
#include "common/Output.h"
#include "common/TextTable.h"
#include "text/Conversion.h"

namespace tolvanix::kit {

namespace {

std::string validText(const std::string& text) {
  return toXmlUtf8(widen(text));
}

std::string infTable(const InfList& infs) {
  using enum Column::WhenNarrow;
  TextTable table(
      {{"INF file", kIsShortened}, {"Encoding", kStays}, {"Class", kStays}, {"DriverVer", kStays}});
  for (const PackageInf& file : infs.files()) {
    table.addRow({validText(file.name), file.encoding, validText(file.className),
                  validText(file.driverVersion)});
  }
  return table.format(lineLimit()) + '\n';
}

std::string deviceTable(const std::vector<PackageDevice>& devices, InfList& infs) {
  using enum Column::WhenNarrow;
  TextTable table(
      {{"Device in package.xml", kStays}, {"Version", kStays}, {"Taken from", kIsShortened}});
  for (const PackageDevice& device : devices) {
    const PackageInf* const taken = infs.choose(device.hardwareId).taken;
    table.addRow({device.hardwareId, validText(device.version),
                  taken != nullptr ? validText(taken->name) : "no INF file"});
  }
  return table.format(lineLimit()) + '\n';
}

// The tables of the INF files and of the devices.
std::string checkFiles(const PackageFolder& package, const SchemaCheck& schemas,
                       Findings& findings) {
  package.checkProgram(findings);
  checkLibrary(package, findings);
  package.checkHelper(findings);
  InfList infs(findings);
  std::string tables = infs.files().empty() ? "" : infTable(infs);
  const auto description = package.find(kDescription);
  if (!description) {
    findings.error(kDescription, "the package description is missing",
                   "write one (sdk/README.md, sdk/package.xsd)");
    return tables;
  }
  const std::vector<PackageDevice> devices = readDescription(*description, findings);
  checkDevices(devices, infs, findings);
  schemas.check(*description, kPackageSchema, *description, "compare it with sdk/package.xsd",
                findings);
  return devices.empty() ? tables : tables + deviceTable(devices, infs);
}

}  // namespace

int check(const CheckOptions& options) {
  std::vector<Computer> computers;
  for (const std::string& name : options.computers) computers.push_back(computerOf(name));
  const PackageFolder package(options.package);
  const SchemaCheck schemas;
  Findings findings;
  std::string text = checkFiles(package, schemas, findings);
  if (!computers.empty()) {
    text += tryOnComputers(package, options.substitutes, computers, schemas, findings) + '\n';
  }
  if (!schemas.isPossible()) text += "Without xmllint, no document was compared with its schema.\n";
  print(text + findings.text());
  return findings.empty() ? kDone : kFindings;
}

}  // namespace tolvanix::kit
