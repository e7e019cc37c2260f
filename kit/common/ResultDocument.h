// What a result document of the program says (docs/result.xsd).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tolvanix::kit {

// Texts are valid UTF-8, whatever the document holds.
struct ReportedDevice {
  std::string vendorID;  // the identifiers: hexadecimal, as in the document
  std::string deviceID;
  std::string subDeviceID;
  std::string subVendorID;
  std::int32_t bus = -1;  // the place: -1 if the document does not say
  std::int32_t device = -1;
  std::int32_t function = -1;
  std::string name;
  std::string driverVersion;  // what is installed; empty for no known driver
  std::string firmwareVersion;
  std::string packageVersion;  // of an execution
  std::optional<int> status;   // of an execution
};

struct ResultDocument {
  enum class Kind { kInventory, kExecution, kCommandLine };

  Kind kind = Kind::kCommandLine;
  std::vector<ReportedDevice> devices;
  std::optional<int> status;  // of the whole run, where the document has one
  bool restartRequired = false;
};

// Throws BadInput for what is no result document, or not a whole one.
ResultDocument readResultDocument(const std::string& fileName);

// The exit code of the run that wrote the document.
int exitCodeOf(const ResultDocument& document);

}  // namespace tolvanix::kit
