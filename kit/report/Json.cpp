// The report for programs.
#include <nlohmann/json.hpp>

#include "app/Status.h"
#include "common/Advice.h"
#include "report/Report.h"

namespace tolvanix::kit {

namespace {

using Json = nlohmann::ordered_json;

Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json numberOrNull(std::int32_t number) {
  return number < 0 ? Json() : Json(number);
}

Json statusOf(const std::optional<int>& code) {
  if (!code) return {};
  const Advice& advice = adviceForExitCode(*code);
  const bool known = *code >= 0 && *code < kStatusCount;
  return {{"code", *code},
          {"success", isSuccess(*code)},
          {"message", known ? Json(kStatusTexts[static_cast<std::size_t>(*code)]) : Json()},
          {"meaning", advice.meaning},
          {"action", advice.action}};
}

Json jsonOf(const ReportedDevice& device) {
  return {{"hardwareID", hardwareIdOf(device)},
          {"vendorID", device.vendorID},
          {"deviceID", device.deviceID},
          {"subDeviceID", device.subDeviceID},
          {"subVendorID", device.subVendorID},
          {"bus", numberOrNull(device.bus)},
          {"device", numberOrNull(device.device)},
          {"function", numberOrNull(device.function)},
          {"name", device.name},
          {"driverVersion", textOrNull(device.driverVersion)},
          {"firmwareVersion", textOrNull(device.firmwareVersion)},
          {"packageVersion", textOrNull(device.packageVersion)},
          {"status", statusOf(device.status)}};
}

const char* nameOf(ResultDocument::Kind kind) {
  switch (kind) {
    case ResultDocument::Kind::kInventory:
      return "inventory";
    case ResultDocument::Kind::kExecution:
      return "execution";
    default:
      return "commandLine";
  }
}

// A device a line, each written as soon as it is made: those of many large computers at once would
// take several gigabytes.
void append(std::string& out, const ReportedComputer& computer) {
  const ResultDocument& document = computer.document;
  const Json summary = {
      {"computer", computer.name},         {"file", computer.file},
      {"document", nameOf(document.kind)}, {"restartRequired", document.restartRequired},
      {"exitCode", exitCodeOf(document)},  {"status", statusOf(document.status)}};
  std::string head = summary.dump();
  head.back() = ',';
  out.append(head).append("\"devices\":[");
  for (const ReportedDevice& device : document.devices) {
    out.append(&device != &document.devices.front() ? ",\n" : "\n").append(jsonOf(device).dump());
  }
  out += "]}";
}

}  // namespace

std::string asJson(const Report& report) {
  std::string out = "{\"computers\":[";
  for (const ReportedComputer& computer : report) {
    out += &computer != &report.front() ? ",\n" : "\n";
    append(out, computer);
  }
  return out + "]}\n";
}

}  // namespace tolvanix::kit
