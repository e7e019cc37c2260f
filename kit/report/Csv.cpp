// The report for spreadsheets (RFC 4180).
#include <string_view>

#include "report/Report.h"

namespace tolvanix::kit {

namespace {

void appendField(std::string& out, std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
    out += text;
    return;
  }
  out += '"';
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

std::string number(std::int32_t value) {
  return value >= 0 ? std::to_string(value) : "";
}

void appendRow(std::string& out, const std::vector<std::string>& fields) {
  for (const std::string& field : fields) {
    if (&field != &fields.front()) out += ',';
    appendField(out, field);
  }
  out += '\n';
}

void appendDevice(std::string& out, const ReportedComputer& computer,
                  const ReportedDevice& device) {
  appendRow(out, {computer.name, number(device.bus), number(device.device), number(device.function),
                  hardwareIdOf(device), device.name, device.driverVersion, device.firmwareVersion,
                  device.packageVersion, device.status ? std::to_string(*device.status) : "",
                  computer.document.restartRequired ? "1" : "0"});
}

}  // namespace

std::string asCsv(const Report& report) {
  std::string out =
      "computer,bus,device,function,hardware_id,name,driver_version,firmware_version,"
      "package_version,code,restart_required\n";
  for (const ReportedComputer& computer : report) {
    const ResultDocument& document = computer.document;
    for (const ReportedDevice& device : document.devices) appendDevice(out, computer, device);
    if (!document.devices.empty() && !document.status) continue;
    // The run as a whole.
    appendRow(out, {computer.name, "", "", "", "", "", "", "", "",
                    document.status ? std::to_string(*document.status) : "",
                    document.restartRequired ? "1" : "0"});
  }
  return out;
}

}  // namespace tolvanix::kit
