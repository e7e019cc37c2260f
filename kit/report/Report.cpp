#include "report/Report.h"

#include <map>
#include <string_view>

#include "app/Status.h"
#include "common/Advice.h"
#include "common/Files.h"
#include "text/Conversion.h"

namespace tolvanix::kit {

namespace {

std::string_view withoutExtension(std::string_view file) {
  const std::size_t dot = file.rfind('.');
  const std::size_t folder = file.find_last_of("/\\");
  const bool isExtension = dot != std::string_view::npos && dot > 0 &&
                           (folder == std::string_view::npos || dot > folder + 1);
  return isExtension ? file.substr(0, dot) : file;
}

// A file's name can be any bytes.
std::string asValidText(std::string_view name) {
  return toXmlUtf8(widen(name));
}

void describeOutcome(int code, ReportRow& row) {
  const Advice& advice = adviceForExitCode(code);
  if (isSuccess(code)) {
    row.outcome = code == kSuccess ? "installed" : "can be installed";
    row.mood = ReportRow::Mood::kGood;
    return;
  }
  row.outcome = "failed (" + std::to_string(code) + "): " + advice.meaning;
  row.advice = advice.action;
  row.mood = ReportRow::Mood::kBad;
}

ReportRow rowOf(const ReportedComputer& computer) {
  ReportRow row;
  row.computer = computer.name;
  row.restart = computer.document.restartRequired;
  return row;
}

ReportRow rowOf(const ReportedComputer& computer, const ReportedDevice& device) {
  ReportRow row = rowOf(computer);
  if (device.bus >= 0) {
    row.place = std::to_string(device.bus) + ':' + std::to_string(device.device) + '.' +
                std::to_string(device.function);
  }
  row.id = device.vendorID + ':' + device.deviceID;
  row.hardwareId = hardwareIdOf(device);
  row.device = device.name;
  row.driver = device.driverVersion.empty() ? "none" : device.driverVersion;
  row.firmware = device.firmwareVersion;
  row.package = device.packageVersion;
  if (device.status) describeOutcome(*device.status, row);
  return row;
}

// What the document says about the run as a whole.
ReportRow runRow(const ReportedComputer& computer) {
  const ResultDocument& document = computer.document;
  ReportRow row = rowOf(computer);
  if (document.status) {
    describeOutcome(*document.status, row);
    // Only -uhid reports a success like this, and the document does not say for which ID.
    row.device = row.mood == ReportRow::Mood::kGood ? "(one hardware ID)" : "(the run)";
  } else {
    row.device = "(no device)";
    if (document.kind == ResultDocument::Kind::kExecution) row.outcome = "nothing to install";
  }
  return row;
}

}  // namespace

Report readReport(const std::vector<std::string>& files) {
  const auto nameOf = [](std::string_view file) { return withoutFolder(withoutExtension(file)); };
  std::map<std::string_view, int> uses;
  for (const std::string& file : files) ++uses[nameOf(file)];
  Report report;
  for (const std::string& file : files) {
    const std::string_view shortName = nameOf(file);
    const std::string_view name = uses[shortName] == 1 ? shortName : withoutExtension(file);
    report.push_back({asValidText(name), asValidText(file), readResultDocument(file)});
  }
  return report;
}

std::string hardwareIdOf(const ReportedDevice& device) {
  return "PCI\\VEN_" + device.vendorID + "&DEV_" + device.deviceID + "&SUBSYS_" +
         device.subDeviceID + device.subVendorID;
}

std::vector<ReportRow> rowsOf(const Report& report) {
  std::vector<ReportRow> rows;
  for (const ReportedComputer& computer : report) {
    const ResultDocument& document = computer.document;
    for (const ReportedDevice& device : document.devices) rows.push_back(rowOf(computer, device));
    if (document.devices.empty() || document.status) rows.push_back(runRow(computer));
  }
  return rows;
}

ReportSums sumsOf(const Report& report, const std::vector<ReportRow>& rows) {
  ReportSums sums;
  sums.computers = report.size();
  for (const ReportedComputer& computer : report) {
    sums.devices += computer.document.devices.size();
    if (computer.document.restartRequired) sums.restarts.push_back(computer.name);
  }
  for (const ReportRow& row : rows) {
    if (row.outcome == "installed") ++sums.installed;
    if (row.mood == ReportRow::Mood::kBad) ++sums.failed;
  }
  return sums;
}

}  // namespace tolvanix::kit
