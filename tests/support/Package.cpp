#include "support/Package.h"

#include <cstdlib>

#include "support/Matchers.h"
#include "support/Patterns.h"
#include "support/ResultDocument.h"

namespace tolvanix::test {

namespace fs = std::filesystem;

namespace {

const fs::path kBuiltProgram = TOLVANIX_PROGRAM;

// The folder that TOLVANIX_RECORD_RUNS names, without the records of earlier tests; empty for none.
const fs::path& recordsFolder() {
  static const fs::path folder = [] {
    const char* const name = std::getenv("TOLVANIX_RECORD_RUNS");
    if (name != nullptr) fs::remove_all(name);
    return fs::path(name != nullptr ? name : "");
  }();
  return folder;
}

// For the comparison of the platforms (tests/checks/check_parity.py): what the run was asked, what
// it returned and what the package contains now, but for programs and what is very large.
void record(const Arguments& arguments, const ProgramResult& result, const fs::path& package) {
  if (recordsFolder().empty()) return;
  const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
  const auto ofTest = recordsFolder() / (std::string(test->test_suite_name()) + '.' + test->name());
  int number = 1;
  while (exists(ofTest / std::to_string(number))) ++number;
  const auto folder = ofTest / std::to_string(number);
  std::string lines;
  for (const std::string& argument : arguments) lines += argument + '\n';
  writeFile(folder / "arguments", lines);
  writeFile(folder / "exit code", std::to_string(result.exitCode));
  writeFile(folder / "output", result.output);
  writeFile(folder / "errors", result.errors);
  for (const auto& entry : fs::recursive_directory_iterator(package)) {
    const auto type = entry.path().extension();
    const bool program = type.empty() || type == ".exe" || type == ".dll";
    if (!entry.is_regular_file() || program || entry.file_size() > 1'000'000) continue;
    writeFile(folder / "package" / entry.path().lexically_relative(package),
              readFile(entry.path()));
  }
}

}  // namespace

Package::Package() {
  fs::copy_file(kBuiltProgram, program());
}

fs::path Package::program() const {
  return folder / kBuiltProgram.filename().string();
}

void Package::add(std::string_view name, std::string_view bytes) const {
  writeFile(folder / name, bytes);
}

ProgramResult Package::run(const Arguments& arguments) const {
  ProgramResult result = runProgram(program(), arguments);
  record(arguments, result, path());
  if (result.output.starts_with("<?xml")) {
    EXPECT_EQ(schemaErrors(result.output), "") << result.output;
  }
  return result;
}

std::string Package::explained(const ProgramResult& result) const {
  add("result.xml", result.output);
  const auto story =
      runKit({"explain", (folder / "trace.log").string(), (folder / "result.xml").string()});
  EXPECT_EQ(story.exitCode, 0) << story.errors;
  const auto last = "\nExit code " + std::to_string(result.exitCode) + ": [^\n]*\n$";
  EXPECT_TRUE(isMatch(story.output, last)) << story.output;
  return story.output;
}

ProgramResult runKit(const Arguments& arguments) {
  return runProgram(TOLVANIX_KIT, arguments);
}

}  // namespace tolvanix::test
