// What a trace of level 4 says about a run of the program.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tolvanix::kit {

// Texts are valid UTF-8 without control characters.

// An error of the system, as the trace has it.
struct TracedError {
  std::string place;  // the operation of the program
  int code = 0;
  std::string message;
};

// One INF file in which a hardware ID was looked for.
struct TriedFile {
  std::string path;
  std::string listedAs;               // the name that the file has for the device
  std::optional<int> helperResult;    // of ExecCmd
  std::optional<int> helperExitCode;  // if it ended
  std::vector<TracedError> errors;
  std::optional<int> status;  // a DeviceStatus
};

// The search for the driver of one hardware ID.
struct DriverSearch {
  std::string hardwareId;
  std::string namedFile;  // with -n
  bool checkOnly = false;
  bool isRepeated = false;  // the ID was handled before, and this device has the same outcome
  std::vector<TriedFile> files;
  std::optional<int> deviceStatus;
  std::optional<int> exitCode;  // what the device status counts as
};

struct TracedRun {
  enum class Command { kUnknown, kInventory, kUpdate, kHardwareId };

  Command command = Command::kUnknown;
  std::size_t devices = 0;  // of the inventory, those left out included
  std::size_t devicesLeftOut = 0;
  std::string packageName;
  bool packageUnreadable = false;
  bool validated = false;                 // the library was called
  std::optional<std::string> validation;  // its document, the bytes as they are
  std::vector<DriverSearch> searches;
  bool restart = false;
  std::string lastLine;
  std::optional<int> exitCode;  // none if the trace has no end
};

// Throws BadInput for what is no trace of level 4. A trace that ends too early has no exit code.
TracedRun readTrace(const std::string& fileName);

}  // namespace tolvanix::kit
