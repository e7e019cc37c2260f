#include "explain/Story.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <list>
#include <string_view>
#include <vector>

#include "app/Status.h"
#include "common/Advice.h"
#include "common/DisplayWidth.h"
#include "common/Files.h"
#include "common/Wording.h"
#include "install/DeviceStatus.h"
#include "install/ExecCmd.h"
#include "inventory/SPXMLData.h"
#include "text/Conversion.h"
#include "text/Format.h"
#include "winapi/winapi.h"
#include "xml/SPXMLObject.h"
#include "xml/SPXMLValidation.h"
#include "xml/XMLQuery.h"

namespace tolvanix::kit {

namespace {

std::string textOf(std::u16string_view text) {
  return printable(toXmlUtf8(text));
}

// ---- An INF file ----

// What systems have no text for, or one that says little.
struct SetupError {
  DWORD code;
  const char* text;
};
constexpr SetupError kSetupErrors[] = {
    {ERROR_EXPECTED_SECTION_NAME, "it has text before its first [section]"},
    {ERROR_BAD_SECTION_NAME_LINE, "the line of a [section] has no closing bracket"},
    {ERROR_SECTION_NAME_TOO_LONG, "the name of a [section] is too long"},
    {ERROR_WRONG_INF_STYLE, "it has no [Version] with a Signature, so it is no INF file"},
    {ERROR_LINE_NOT_FOUND, "it has no lines in [Manufacturer]"},
    {ERROR_NO_ASSOCIATED_CLASS, "its [Version] has neither Class nor ClassGUID"},
};

std::string textOf(const TracedError& error) {
  const auto* const known =
      std::find_if(std::begin(kSetupErrors), std::end(kSetupErrors),
                   [&error](const auto& e) { return e.code == static_cast<DWORD>(error.code); });
  std::string text = known != std::end(kSetupErrors) ? known->text : error.message;
  while (text.ends_with(' ') || text.ends_with('.')) text.pop_back();
  const char* const format = error.code < 0 ? ": %s (error 0x%X)" : ": %s (error %u)";
  return formatText(format, text.c_str(), static_cast<unsigned>(error.code));
}

// ": text (error 2)" for the last error at that place; empty if there was none.
std::string errorAt(const TriedFile& file, std::string_view place) {
  constexpr int kEndOfList = 259;  // a search that found nothing ends with it
  std::string text;
  for (const TracedError& error : file.errors) {
    if (error.place == place && error.code != kEndOfList) text = textOf(error);
  }
  return text;
}

std::string listing(const TriedFile& file) {
  return "lists the ID" + (file.listedAs.empty() ? "" : " as \"" + file.listedAs + '"');
}

std::string helperOutcome(const TriedFile& file) {
  if (file.helperResult == kExecTimedOut) {
    return "the helper program had not ended after 300 seconds, its time limit, and was left "
           "running";
  }
  if (file.helperResult == kExecFailed) {
    const std::string error = errorAt(file, "DevHelper, ExecCmd");
    return "the helper program was not started" +
           (error.empty() ? errorAt(file, "CDevInfoSet::UpdateDriver") : error);
  }
  std::string text = "the helper program ended with ";
  text += file.helperExitCode ? "code " + std::to_string(*file.helperExitCode) : "no known code";
  if (file.status == kDeviceInstalled) return text + ": the driver is installed";
  if (file.status == kDeviceInstalledRestart) {
    return text + ": the driver is installed, and the computer must be restarted";
  }
  return text + ", which is a failure";
}

std::string fileOutcome(const TriedFile& file) {
  std::string present = listing(file) + ", and a device with it is present";
  if (!file.status) return "the trace does not say what became of it";
  switch (*file.status) {
    case kDeviceInfNotOpened:
      return "was not opened" + errorAt(file, "CInf::Open");
    case kDeviceNoIdForInstall:
      return "was not searched, since there is no ID";
    case kDeviceIdInNoInf:
    case kDeviceCheckNotFound:
      return "does not list the ID" + errorAt(file, "CInf::EnumManufacturers");
    case kDeviceNotPresent:
      return listing(file) + ", but no present device has it" +
             errorAt(file, "CDevInfoSet::FindExistingDevice");
    case kDeviceCheckFound:
      return present;
    case kDeviceInstalled:
    case kDeviceInstalledRestart:
    case kDeviceHelperFailed:
      return present + "; " + helperOutcome(file);
    default:
      return adviceForDeviceStatus(*file.status).meaning;
  }
}

// ---- A device ----

void addSearch(const DriverSearch& search, std::string& out) {
  if (search.isRepeated) {
    out += "  This ID was handled above; the outcome is the same.\n";
  } else if (!search.files.empty()) {
    out.append("  INF files, in the order in which they were ");
    out.append(search.checkOnly ? "searched (-c: nothing is installed):\n" : "tried:\n");
  }
  for (std::size_t i = 0; i < search.files.size(); ++i) {
    const TriedFile& file = search.files[i];
    out += "    " + std::to_string(i + 1) + ". ";
    out.append(withoutFolder(file.path)) += ' ' + fileOutcome(file) + ".\n";
  }
  if (!search.deviceStatus) {
    out += "  The trace does not say what became of it.\n";
    return;
  }
  const Advice& advice = adviceForDeviceStatus(*search.deviceStatus);
  out += "  Device status " + std::to_string(*search.deviceStatus) + ": " + advice.meaning + ".\n";
  out += std::string("  What to do: ") + advice.action + '\n';
}

// "name, installed 1.0, package 1.1"
std::string describe(const SPXMLDevice& device) {
  std::string text = textOf(device.getDisplay());
  if (device.getApplications().empty()) return text;
  const SPXMLApplication& application = device.getApplications().front();
  text += ", installed " + textOf(application.getVersion());
  if (application.getPackageVersion().empty()) return text;
  return text + ", package " + textOf(application.getPackageVersion());
}

// The devices of the validation document are handled in its order.
void addSearches(const TracedRun& run, const std::list<SPXMLDevice>& devices, std::string& out) {
  auto device = devices.begin();
  for (std::size_t i = 0; i < run.searches.size(); ++i) {
    const DriverSearch& search = run.searches[i];
    out += '\n';
    if (run.command == TracedRun::Command::kUpdate) {
      out += "Device " + std::to_string(i + 1);
      if (device != devices.end()) out += ": " + describe(*device++);
      out += "\n";
    }
    if (!search.hardwareId.empty()) out += "  Hardware ID: " + search.hardwareId + '\n';
    if (!search.namedFile.empty()) out += "  Only this file (-n): " + search.namedFile + '\n';
    addSearch(search, out);
  }
}

// ---- The run ----

const char* title(TracedRun::Command command) {
  switch (command) {
    case TracedRun::Command::kInventory:
      return "tolvanix -i: the inventory\n";
    case TracedRun::Command::kUpdate:
      return "tolvanix -u: the drivers of a package\n";
    case TracedRun::Command::kHardwareId:
      return "tolvanix -uhid: the driver for one hardware ID\n";
    default:
      return "tolvanix: a run that ended before its command began\n";
  }
}

void addInventory(const TracedRun& run, std::string& out) {
  if (run.devices == 0) return;
  out += "Inventory: " + counted(run.devices, "PCI device");
  if (run.devicesLeftOut > 0) {
    out += ", " + std::to_string(run.devicesLeftOut) + " left out by DriverConfiguration.ini";
  }
  out += ".\n";
}

std::list<SPXMLDevice> addValidation(const TracedRun& run, std::string& out) {
  if (!run.packageName.empty()) out += "Package: " + run.packageName + '\n';
  if (run.packageUnreadable) out += "The package description could not be read.\n";
  if (!run.validated) return {};
  if (!run.validation) {
    out += "Validation library: it returned no document.\n";
    return {};
  }
  const std::u16string text = widen(*run.validation);
  const SPXMLData document(text);
  std::vector<SPXMLValidation> findings;
  xmlquery::readElements(text, u"Validation", findings);
  out += "Validation library: " + counted(document.getDevices().size(), "device") + " to update, " +
         counted(findings.size(), "finding") + ".\n";
  for (const SPXMLValidation& finding : findings) {
    out += "  " + textOf(finding.getType()) + ", result " + textOf(finding.getResult()) + ':';
    for (const SPUString& message : finding.getMessages())
      out += ' ' + textOf(SPXMLObject::unescapeText(message));
    out += '\n';
  }
  return document.getDevices();
}

// What a device has been advised to do needs no repetition.
void addEnd(const TracedRun& run, int exitCode, std::string& out) {
  const auto decisive =
      std::find_if(run.searches.begin(), run.searches.end(),
                   [exitCode](const DriverSearch& s) { return s.exitCode == exitCode; });
  const bool isToldAlready = decisive != run.searches.end();
  if (isToldAlready && exitCode != kSuccess && run.searches.size() > 1) {
    out += "The first failure decides: device " +
           std::to_string(decisive - run.searches.begin() + 1) + ".\n";
  }
  const Advice& advice = adviceForExitCode(exitCode);
  if (!isToldAlready) out += std::string("What to do: ") + advice.action + '\n';
  out += "Exit code " + std::to_string(exitCode) + ": " + advice.meaning + ".\n";
}

}  // namespace

std::string storyOf(const TracedRun& run, int exitCode) {
  std::string out = title(run.command);
  addInventory(run, out);
  const std::list<SPXMLDevice> devices = addValidation(run, out);
  addSearches(run, devices, out);
  out += '\n';
  if (!run.exitCode) out += "The trace ends after: " + run.lastLine + '\n';
  if (run.restart) out += "The computer must be restarted.\n";
  addEnd(run, exitCode, out);
  return out;
}

}  // namespace tolvanix::kit
