#include "support/ResultDocument.h"

#include <set>

#include "support/Files.h"
#include "support/Program.h"

namespace tolvanix::test {

namespace {

std::string runXmllint(const std::string& document) {
  const std::filesystem::path program = XMLLINT_PROGRAM;
  if (program.empty()) return "";
  const TempDir folder;
  writeFile(folder / "result.xml", document);
  const ProgramResult run =
      runProgram({.program = program,
                  .arguments = {"--huge", "--nonet", "--noout", "--schema", RESULT_SCHEMA,
                                (folder / "result.xml").string()}});
  return run.exitCode == 0 ? "" : run.errors;
}

}  // namespace

std::string schemaErrors(const std::string& document) {
  static std::set<std::string> valid;  // many runs write the same one
  if (valid.contains(document)) return "";
  std::string errors = runXmllint(document);
  if (errors.empty()) valid.insert(document);
  return errors;
}

}  // namespace tolvanix::test
