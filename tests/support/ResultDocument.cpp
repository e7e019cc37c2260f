#include "support/ResultDocument.h"

#include <set>

#include "app/Status.h"
#include "support/Files.h"
#include "support/Patterns.h"
#include "support/Program.h"
#include "text/Format.h"

namespace tolvanix::test {

std::string messageElement(int status) {
  return formatText(R"(<Message id="%d">%s</Message>)", status,
                    kStatusTexts.at(static_cast<std::size_t>(status)));
}

std::string statusElement(int status) {
  return formatText(R"(<SPStatus result = "%s">%s</SPStatus>)",
                    status == kSuccess ? "true" : "false", messageElement(status).c_str());
}

std::string executionDocument(const std::string& content, int reboot) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><SVMExecution lang="en">)" + content +
         formatText("<RebootRequired>%d</RebootRequired></SVMExecution>", reboot);
}

std::string fixtureDocument(std::string_view name) {
  return replaced(readText(fixture(name)), ">\n", ">");
}

std::string schemaErrors(const std::string& document) {
  static std::set<std::string> valid;  // many runs write the same one
  const std::filesystem::path program = XMLLINT_PROGRAM;
  if (program.empty() || valid.contains(document)) return "";
  const TempDir folder;
  writeFile(folder / "result.xml", document);
  const ProgramResult run = runProgram(program, {"--huge", "--nonet", "--noout", "--schema",
                                                 RESULT_SCHEMA, (folder / "result.xml").string()});
  if (run.exitCode != 0) return run.errors;
  valid.insert(document);
  return "";
}

}  // namespace tolvanix::test
