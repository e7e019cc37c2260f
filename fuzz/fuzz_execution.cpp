// Updates: settings, a validation document, a package file and an INF file.
#include <dlfcn.h>
#include <unistd.h>

#include "app/KivWrapper.h"
#include "fuzz.h"
#include "install/ExecCmd.h"
#include "text/Conversion.h"
#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::fuzz {

namespace {

using Text = std::u16string;

constexpr char kInf[] = "fuzz.inf";

// What one run is given, and what the program hands over in it.
struct Run {
  bool checkOnly = false;
  std::u16string validation;
  std::string
      helperCodes;  // the helper program's exit codes, by the first digit of the device's ID
  std::u16string packageSeen;
};
Run run;

const char* const kPresent[] = {"PCI\\VEN_1DE0&DEV_0010&SUBSYS_00011DE0",
                                "PCI\\VEN_1DE0&DEV_0020&SUBSYS_00021DE0",
                                "PCI\\VEN_1DE4&DEV_1502&SUBSYS_04A3ABCD"};

// The helper program's exit code for a device.
DWORD helperCode(const std::string& hardwareId) {
  std::size_t sum = 0;
  for (const char c : hardwareId) sum += static_cast<unsigned char>(c);
  return run.helperCodes.empty()
             ? 0
             : static_cast<DWORD>(run.helperCodes[sum % run.helperCodes.size()] - '0') % 3;
}

}  // namespace

namespace naive {

namespace {

// The status of one device, and whether its driver wants a restart.
std::pair<int, bool> install(const InfContent& inf, const std::string& id) {
  if (!inf.opens) return {37, false};
  if (findModel(inf, id) == nullptr) return {run.checkOnly ? 35 : 36, false};
  bool isPresent = false;
  for (const char* const present : kPresent) isPresent = isPresent || id == present;
  if (!isPresent) return {40, false};
  if (run.checkOnly) return {34, false};
  const DWORD code = helperCode(id);
  return {code > 1 ? 39 : 0, code == 1};
}

// Without the outcome.
Element deviceElement(const Text& device) {
  Element element = {"Device", {}, "", {}};
  const auto devices = elements(device, u"Device");
  const auto value = [&devices](const char* name) { return attribute(devices, widen(name)); };
  for (const char* const name : {"vendorID", "deviceID", "subDeviceID", "subVendorID"}) {
    char digits[9] = "";
    std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned>(hexadecimal(value(name))));
    element.attributes[name] = digits;
  }
  for (const char* const name : {"bus", "device", "function"}) {
    element.attributes[name] = std::to_string(decimal(value(name)).value_or(-1));
  }
  element.attributes["display"] = attributeValue(value("display"));

  const auto found = elements(device, u"Application");
  const Text application = found.empty() ? Text() : found[0];
  const auto applications = elements(application, u"Application");
  Element& written = element.children.emplace_back(Element{"Application", {}, "", {}});
  for (const char* const name : {"componentType", "version", "display"}) {
    written.attributes[name] = attributeValue(attribute(applications, widen(name)));
  }
  const auto versions = attributeValues(elements(application, u"Package"), u"version");
  const Text version = versions.empty() ? Text() : unescaped(versions.back());
  written.children.push_back({"Package", {{"version", attributeValue(version)}}, "", {}});
  return element;
}

bool isRefused(const Text& validation) {
  for (const Text& element : elements(validation, u"Validation")) {
    const Text type = attribute(elements(element, u"Validation"), u"type");
    if (type == u"qualification" || type == u"hard") return true;
  }
  return false;
}

// The document of the execution, and its status.
std::pair<Element, int> execute(std::string_view inf) {
  Element document = {"SVMExecution", {{"lang", "en"}}, "", {}};
  int status = 0;
  bool restart = false;
  const InfContent content = readInf(inf);
  for (const Text& device : elements(run.validation, u"Device")) {
    Element& element = document.children.emplace_back(deviceElement(device));
    auto& ids = element.attributes;
    const auto [outcome, wantsRestart] =
        install(content, "PCI\\VEN_" + ids["vendorID"] + "&DEV_" + ids["deviceID"] + "&SUBSYS_" +
                             ids["subDeviceID"] + ids["subVendorID"]);
    element.children[0].children.push_back(statusElement(outcome));
    restart = restart || wantsRestart;
    if (status == 0) status = outcome;  // the first that failed
  }
  document.children.push_back({"RebootRequired", {}, restart ? "1" : "0", {}});
  return {document, status};
}

Text packageText(std::string_view bytes) {
  Text text = widen(bytes);
  if (bytes.starts_with("\xFF\xFE")) {
    text.clear();
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) +
                                    static_cast<unsigned char>(bytes[i + 1]) * 256);
    }
  }
  return upToZero(text);
}

}  // namespace
}  // namespace naive

namespace {

const KivChar* validate(const KivChar* package, const KivChar* /*inventory*/) {
  run.packageSeen = package;
  return run.validation.c_str();
}

// A package's folder with the library in it, which stays loaded. Returns where the library keeps
// the document that it was given back.
const KivChar*& prepareFolder() {
  const std::string library = scratchFolder() + "/kivvalid.dll";
  if (symlink(FUZZ_KIVVALID, library.c_str()) != 0) reportFinding("no link to the library", "", "");
  void* const loaded = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (loaded == nullptr) reportFinding("no library", dlerror(), "");
  *static_cast<decltype(&validate)*>(dlsym(loaded, "fuzzValidate")) = validate;
  winapi::exchangePresentedMachine(std::make_unique<PlainMachine>(
      std::vector<std::string>(std::begin(kPresent), std::end(kPresent))));
  return *static_cast<const KivChar**>(dlsym(loaded, "fuzzFreed"));
}

// One with its library loaded. It remembers that a driver wants a restart.
std::unique_ptr<KivWrapper> makeProgram() {
  auto program = std::make_unique<KivWrapper>();
  expectEqual("library", program->LoadValidationLibrary(), 0);
  return program;
}

}  // namespace

void execution(std::string_view input) {
  static const KivChar*& freed = prepareFolder();
  const InScratchFolder current;
  static std::unique_ptr<KivWrapper> program = makeProgram();
  static const MemoryFile package;
  const std::string settings(takePart(input));
  run.checkOnly = settings.find('c') != settings.npos;
  run.helperCodes = settings.substr(0, settings.find_first_not_of("012"));
  run.validation = naive::packageText(takePart(input));
  // Each device takes its time, and more than a few show nothing new.
  if (naive::elements(run.validation, u"Device").size() > 3) return;
  const std::string_view packageBytes = takePart(input);
  package.write(packageBytes);
  writeFile(kInf, input);

  const int verified = program->PerformValidation("en", package.name().c_str());
  expectEqual("package", run.packageSeen, naive::packageText(packageBytes));
  expectEqual("validation", verified, naive::isRefused(run.validation) ? 21 : 0);
  if (verified == 0) {
    const bool namesInf = settings.find('n') != settings.npos;
    const int status = program->PerformExecution(namesInf ? kInf : nullptr, run.checkOnly ? 1 : 0);
    const auto [expected, expectedStatus] = naive::execute(input);
    const Element found = readDocument(takeOutput());
    expectEqual("document", found, expected);
    expectEqual("status", status, expectedStatus);
    if (found.children.back().content == "1") program = makeProgram();
  }
  program->FreeValidationXML();
  expectEqual("document given back", freed == run.validation.c_str(), true);
}

}  // namespace tolvanix::fuzz

// In place of a helper program, which would be another process: installs, wants a restart or fails.
int runHelper(const char* directory, const char* commandLine, WORD showWindow, char* output,
              DWORD outputSize, DWORD& exitCode, int timeLimitSeconds,
              const char* progress) __asm__("__wrap__ZN8tolvanix7ExecCmdEPKcS1_tPcjRjiS1_");
int runHelper(const char* /*directory*/, const char* commandLine, WORD /*showWindow*/,
              char* /*output*/, DWORD /*outputSize*/, DWORD& exitCode, int /*timeLimitSeconds*/,
              const char* /*progress*/) {
  std::string_view rest = commandLine;
  tolvanix::fuzz::takePart(rest, '"');
  exitCode = tolvanix::fuzz::helperCode(std::string(tolvanix::fuzz::takePart(rest, '"')));
  return tolvanix::kExecEnded;
}
