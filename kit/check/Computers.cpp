#include "check/Computers.h"

#include <filesystem>
#include <system_error>

#include "app/Status.h"
#include "check/Findings.h"
#include "check/PackageDescription.h"
#include "check/PackageFolder.h"
#include "check/SchemaCheck.h"
#include "check/Schemas.h"
#include "check/Trial.h"
#include "common/Advice.h"
#include "common/Files.h"
#include "common/Outcome.h"
#include "common/Output.h"
#include "common/TextTable.h"
#include "report/Report.h"
#include "text/Conversion.h"
#include "text/SPUString.h"
#include "xml/SPXMLObject.h"

namespace tolvanix::kit {

namespace {

namespace fs = std::filesystem;

// The Linux build that takes part in a run: the substitute, or the package's own file.
fs::path linuxBuild(const PackageFolder& package, const char* name, const std::string& substitute,
                    const char* option) {
  if (!substitute.empty()) return substitute;
  const auto own = package.find(name);
  if (!own) return {};
  if (imageOf(readFile(*own)) == Image::kWindows) {
    throw BadInput(*own + " is for Windows: name a build for Linux with " + option);
  }
  return fs::absolute(*own);
}

fs::path linuxProgram(const PackageFolder& package) {
  const auto own = package.find(kLinuxProgram);
  if (own && imageOf(readFile(*own)) == Image::kLinux) return fs::absolute(*own);
  fs::path besideKit = fs::canonical("/proc/self/exe").parent_path() / kLinuxProgram;
  if (!fs::exists(besideKit)) {
    throw BadInput(besideKit.string() +
                   ": it is missing, and the package has no program for Linux");
  }
  return besideKit;
}

void judgeRun(const std::string& name, const TrialRun& run, Findings& findings) {
  const Advice& advice = adviceForExitCode(run.exitCode);
  for (const std::string& line : run.complaints) {
    findings.warning(name + line, "this part of the computer was left out", "collect it again");
  }
  // What the library refuses it refuses for a reason that is in the table.
  if (isSuccess(run.exitCode) || run.exitCode == kValidationFailed) return;
  std::string problem = "the update ends with exit code " + std::to_string(run.exitCode) + ", " +
                        std::string(advice.meaning);
  for (const std::string& line : run.said) problem += " (" + line + ")";
  findings.error(name, problem, advice.action);
}

void addRows(const Computer& computer, const TrialRun& run, TextTable& table) {
  const std::string name = toXmlUtf8(widen(computer.name));
  for (const ReportRow& row : rowsOf({{name, name, run.result}})) {
    const bool restart = row.restart && row.mood == ReportRow::Mood::kGood;
    table.addRow({name, row.device, row.driver, row.outcome + (restart ? ", restart needed" : "")});
  }
  SPXMLObject validation;
  validation.setXML(SPUString(run.validation));
  for (const SPUString& finding : validation.getElements(SPUString(u"Validation"))) {
    SPXMLObject element;
    element.setXML(finding);
    const SPUString type = element.getAttribute(SPUString(u"Validation"), SPUString(u"type"));
    const SPUString message =
        SPXMLObject::unescapeText(element.getElementText(SPUString(u"Message")));
    table.addRow({name, "(validation library)", "", toXmlUtf8(type) + ": " + toXmlUtf8(message)});
  }
}

}  // namespace

Computer computerOf(const std::string& name) {
  if (kOnWindows) throw BadInput(name + ": a package can be tried on computers on Linux only");
  std::error_code error;
  const fs::path path = fs::canonical(name, error);
  if (error) throw BadInput(name + ": there is no such file or folder");
  if (path == "/sys") throw BadInput(name + ": copy it first, with collect-computer.sh");
  const bool usable = fs::is_directory(path) ? fs::is_directory(path / "bus/pci/devices")
                                             : fs::is_regular_file(path);
  if (!usable) throw BadInput(name + ": this is no registry export, and no copy of a /sys tree");
  return {name, path.string()};
}

std::string tryOnComputers(const PackageFolder& package, const Substitutes& substitutes,
                           const std::vector<Computer>& computers, const SchemaCheck& schemas,
                           Findings& findings) {
  using enum Column::WhenNarrow;
  TextTable table({{"Computer", kIsShortened},
                   {"Device", kIsShortened},
                   {"Installed", kStays},
                   {"Outcome", kIsShortened}});
  const Trial trial({linuxProgram(package),
                     linuxBuild(package, kLibrary, substitutes.validationLibrary, "--library"),
                     linuxBuild(package, kHelper, substitutes.helperProgram, "--helper"),
                     package.find(kDescription).value_or(kDescription)});
  for (const Computer& computer : computers) {
    const TrialRun run = trial.run(computer.path);
    if (!run.complaints.empty() && !fs::is_directory(computer.path)) {
      throw BadInput(computer.name + run.complaints.front());
    }
    judgeRun(computer.name, run, findings);
    addRows(computer, run, table);
    if (run.validation.empty()) continue;
    schemas.check(trial.validationFile(), kValidationSchema,
                  "validation document for " + computer.name,
                  "correct what the validation library writes (sdk/validation.xsd)", findings);
  }
  return table.format(lineLimit());
}

}  // namespace tolvanix::kit
