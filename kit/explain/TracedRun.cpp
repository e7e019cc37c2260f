#include "explain/TracedRun.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

#include "app/Status.h"
#include "common/DisplayWidth.h"
#include "common/Files.h"
#include "common/Outcome.h"
#include "install/DeviceStatus.h"
#include "text/Conversion.h"

namespace tolvanix::kit {

namespace {

using View = std::string_view;

std::string textOf(View bytes) {
  return printable(toXmlUtf8(widen(bytes)));
}

// A whole text that is a number.
std::optional<int> numberOf(View text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<int> statusWithText(View text) {
  const auto found = std::find(kStatusTexts.begin(), kStatusTexts.end(), text);
  if (found == kStatusTexts.end()) return std::nullopt;
  return static_cast<int>(found - kStatusTexts.begin());
}

// Takes a trace line by line.
class Reader {
 public:
  explicit Reader(const std::string& name) : fileName(name) {}

  TracedRun read(View text) {
    if (text.empty()) refuse("the file is empty");
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      if (end == View::npos) break;  // the line is cut off: half a number would be another one
      View line = text.substr(0, end);
      if (line.ends_with('\r')) line.remove_suffix(1);
      takeLine(line);
      text.remove_prefix(end + 1);
    }
    if (level && *level < kWantedLevel) {
      refuse("this is a trace of level " + std::to_string(*level) +
             "; run tolvanix again with -d=4 -e <file>");
    }
    if (!sawStep) refuseAsForeign();
    return std::move(run);
  }

 private:
  static constexpr int kWantedLevel = 4;

  // What to do with a line that begins with this text.
  struct Rule {
    View beginning;
    void (Reader::*take)(View rest);
  };
  static const Rule kRules[];

  [[noreturn]] void refuse(const std::string& why) const { throw BadInput(fileName + ": " + why); }

  [[noreturn]] void refuseAsForeign() const {
    if (level) refuse("the trace went elsewhere; name its file with -e <file>");
    refuse("this is no trace of tolvanix of level 4");
  }

  void takeLine(View line);

  // ---- The run ----

  void takeLevel(View rest) { level = numberOf(rest); }
  void takeNothing(View /*rest*/) {}
  void takeInventory(View /*rest*/) { run.command = TracedRun::Command::kInventory; }
  void takeUpdate(View /*rest*/) { run.command = TracedRun::Command::kUpdate; }
  void takeHardwareIdCommand(View /*rest*/) { run.command = TracedRun::Command::kHardwareId; }
  // The text of a status, with which the program refuses to begin.
  void takeRefusal(View rest) { run.exitCode = statusWithText(rest); }
  void takeEnd(View rest) { run.exitCode = numberOf(rest); }
  void takeRestart(View rest) { run.restart = rest == "1"; }

  // ---- Inventory and validation ----

  void takeDevice(View /*rest*/) { ++run.devices; }
  void takeDeviceLeftOut(View /*rest*/) { ++run.devicesLeftOut; }
  void takePackageName(View rest) { run.packageName = textOf(rest); }
  void takeUnreadablePackage(View /*rest*/) { run.packageUnreadable = true; }
  void takeValidationCall(View /*rest*/) { run.validated = true; }

  void takeInventoryDocument(View /*rest*/) { passOver("action"); }
  void takePackageDocument(View /*rest*/) { passOver("PerformValidation: Calling"); }
  void takeValidationDocument(View /*rest*/) {
    passOver("VerifyValidationXML: Checking");
    run.validation.emplace();
    keepsDocument = true;
  }
  void passOver(View end) {
    endOfDocument = end;
    keepsDocument = false;
  }

  // ---- Devices ----

  DriverSearch& search() {
    if (run.searches.empty() || run.searches.back().exitCode) run.searches.emplace_back();
    return run.searches.back();
  }
  TriedFile& file() {
    if (search().files.empty()) search().files.emplace_back();
    return search().files.back();
  }

  void takeHardwareId(View rest) { search().hardwareId = textOf(rest); }
  void takeCheckOnly(View rest) { search().checkOnly = rest == "1"; }
  void takeNamedFile(View rest) {
    if (rest != "<NULL>") search().namedFile = textOf(rest);
  }
  void takeRepeatedId(View rest) {
    search().hardwareId = textOf(rest);
    search().isRepeated = true;
  }
  void takeFile(View rest) {
    search().files.emplace_back();
    file().path = textOf(rest);
  }
  void takeModel(View rest) { model = rest.substr(0, rest.rfind(':')); }
  void takeIdSearch(View rest) {
    if (rest.find(": found. i = ") == View::npos) return;
    file().listedAs = textOf(model);
  }
  void takeHelperResult(View rest) {
    file().helperResult = numberOf(rest.substr(0, rest.find(')')));
  }
  void takeHelperExitCode(View rest) { file().helperExitCode = numberOf(rest); }
  void takeFileStatus(View rest) { file().status = numberOf(rest); }
  void takeDeviceStatus(View rest) {
    search().deviceStatus = numberOf(rest);
    if (search().deviceStatus == kDeviceRestartRequired) run.restart = true;
  }
  void takeDeviceExitCode(View rest) { search().exitCode = numberOf(rest); }

  // "place, line = 1, error code = 2, error msg = text"
  void takeError(View line) {
    constexpr View kLine = ", line = ";
    constexpr View kCode = ", error code = ";
    constexpr View kMessage = ", error msg = ";
    const std::size_t place = line.find(kLine);
    const std::size_t code = line.find(kCode);
    const std::size_t message = line.find(kMessage);
    if (place == View::npos || code == View::npos || message == View::npos || message < code)
      return;
    // Errors in the search for a driver alone are of interest.
    if (run.searches.empty() || run.searches.back().files.empty()) return;
    const std::size_t number = code + kCode.size();
    file().errors.push_back({textOf(line.substr(0, place)),
                             numberOf(line.substr(number, message - number)).value_or(0),
                             textOf(line.substr(message + kMessage.size()))});
  }

  const std::string& fileName;
  TracedRun run;
  std::optional<int> level;
  bool sawStep = false;
  View model;          // the device that the INF file describes where the search is
  View endOfDocument;  // while lines of a document are passed over: the beginning of the next line
  bool keepsDocument = false;
};

const Reader::Rule Reader::kRules[] = {
    {"Search for HwID ", &Reader::takeIdSearch},
    {"EnumDevices for model, ", &Reader::takeModel},
    {"loglevel=", &Reader::takeLevel},
    {"**** tolvanix: Debugging", &Reader::takeNothing},
    {"validateCLIOptionsAndDefaults: ", &Reader::takeRefusal},
    {"LoadValidationLibrary: Loading", &Reader::takeUpdate},
    {"LoadValidationLibrary: ", &Reader::takeRefusal},
    {"actionInventory: Entered", &Reader::takeInventory},
    {"actionUpdateApplicableDevices: Entered", &Reader::takeUpdate},
    {"actionUpdateHardwareID: Entered", &Reader::takeHardwareIdCommand},
    {"KivWrapper::FilterDeviceInventory function entered", &Reader::takeDevice},
    {"KivWrapper::FilterDeviceInventory Match found", &Reader::takeDeviceLeftOut},
    {"converted wchar Inventory XML is:", &Reader::takeInventoryDocument},
    {"converted wchar Package XML is:", &Reader::takePackageDocument},
    {"converted wchar Validation XML is:", &Reader::takeValidationDocument},
    {"PerformValidation: sPkgDescription.data() = ", &Reader::takePackageName},
    {"PerformValidation: Caught exception", &Reader::takeUnreadablePackage},
    {"PerformValidation: Calling SPValidate", &Reader::takeValidationCall},
    {"DriverUpdate: Hardware ID = ", &Reader::takeHardwareId},
    {"DriverUpdate: check INF   = ", &Reader::takeCheckOnly},
    {"DriverUpdate: INF file    = ", &Reader::takeNamedFile},
    {"DriverUpdate: Found INF file = ", &Reader::takeFile},
    {"DriverUpdate: status from Win2kInstall() = ", &Reader::takeFileStatus},
    {"UpdateDriver: return code (", &Reader::takeHelperResult},
    {"UpdateDriver: exit code from exec of helper program = ", &Reader::takeHelperExitCode},
    {"PerformExecution: Duplicate hardware ID found = ", &Reader::takeRepeatedId},
    {"PerformExecution: deviceStatus = ", &Reader::takeDeviceStatus},
    {"PerformExecution: deviceStatus from DriverUpdate() = ", &Reader::takeDeviceStatus},
    {"PerformExecution: mappedDeviceStatus = ", &Reader::takeDeviceExitCode},
    {"actionUpdateHardwareID: deviceStatus from DriverUpdate() = ", &Reader::takeDeviceStatus},
    {"actionUpdateHardwareID: mappedDeviceStatus = ", &Reader::takeDeviceExitCode},
    {"UpdateValidatedDevices: reboot = ", &Reader::takeRestart},
    {"runKiv: status from takeAction() = ", &Reader::takeEnd},
};

void Reader::takeLine(View line) {
  if (!endOfDocument.empty()) {
    if (line.starts_with(endOfDocument)) {
      endOfDocument = {};
    } else {
      if (keepsDocument) run.validation->append(line).append("\n");
      return;
    }
  }
  if (line.starts_with("<?xml")) {
    refuse("the trace and the result document are mixed; run tolvanix with -e <file>");
  }
  const auto* const rule =
      std::find_if(std::begin(kRules), std::end(kRules),
                   [line](const Rule& r) { return line.starts_with(r.beginning); });
  if (rule == std::end(kRules)) {
    takeError(line);
    return;
  }
  (this->*rule->take)(line.substr(rule->beginning.size()));
  if (rule->take != &Reader::takeLevel) sawStep = true;
  run.lastLine = textOf(line);
}

}  // namespace

TracedRun readTrace(const std::string& fileName) {
  const std::string text = readFile(fileName);
  return Reader(fileName).read(text);
}

}  // namespace tolvanix::kit
