#include "check/SchemaCheck.h"

#include <cstdlib>
#include <sstream>
#include <string_view>

#include "check/ChildRun.h"
#include "check/Findings.h"
#include "check/Image.h"
#include "check/TemporaryFolder.h"
#include "common/Files.h"

namespace tolvanix::kit {

namespace {

constexpr std::size_t kMostViolations = 5;

// The part of a line of xmllint that says what is wrong, with the line's number before it; empty
// for a line that does not.
std::string violation(const std::string& line) {
  for (const std::string_view kind : {" error : ", " parser error : "}) {
    const std::size_t found = line.find(kind);
    const std::size_t number = line.find(':');
    if (found == std::string::npos || number > found) continue;
    const std::string place = line.substr(number + 1, line.find(':', number + 1) - number - 1);
    return "line " + place + ": " + line.substr(found + kind.size());
  }
  return {};
}

}  // namespace

SchemaCheck::SchemaCheck() {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(path != nullptr ? path : "");
  for (std::string folder; std::getline(folders, folder, kOnWindows ? ';' : ':');) {
    const std::string program = folder + (kOnWindows ? "\\xmllint.exe" : "/xmllint");
    if (folder.empty() || !isFile(program)) continue;
    xmllint = program;
    return;
  }
}

void SchemaCheck::check(const std::string& file, const char* schema, const std::string& name,
                        const std::string& remedy, Findings& findings) const {
  if (!isPossible()) return;
  const TemporaryFolder folder;
  const std::string schemaFile = folder.file("schema.xsd");
  writeFile(schemaFile, schema);
  const auto run = runChild('"' + xmllint + "\" --noout --nonet --schema \"" + schemaFile +
                            "\" \"" + file + '"');
  if (!run || run->exitCode == 0) return;
  std::istringstream lines(run->output);
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line) && count < kMostViolations;) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line.back() == '.') line.pop_back();
    const std::string problem = violation(line);
    if (problem.empty()) continue;
    findings.error(name, problem, remedy);
    ++count;
  }
  if (count == 0) findings.error(name, "it does not conform to its schema", remedy);
}

}  // namespace tolvanix::kit
