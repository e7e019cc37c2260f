#include "support/Package.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/ResultDocument.h"

namespace tolvanix::test {

namespace fs = std::filesystem;

namespace {

const fs::path kBuiltProgram = TOLVANIX_PROGRAM;

}  // namespace

Package::Package() {
  fs::copy_file(kBuiltProgram, folder / kBuiltProgram.filename().string());
}

void Package::add(std::string_view name, std::string_view bytes) const {
  writeFile(folder / name, bytes);
}

void Package::addCopy(std::string_view name, const fs::path& original) const {
  fs::create_directories((folder / name).parent_path());
  fs::copy_file(original, folder / name);
}

ProgramCall Package::call(Arguments arguments) const {
  return {.program = folder / kBuiltProgram.filename().string(), .arguments = std::move(arguments)};
}

ProgramResult Package::run(Arguments arguments) const {
  return runAndCheck(call(std::move(arguments)));
}

ProgramResult Package::run(Arguments arguments, const Computer& computer) const {
  ProgramCall onComputer = call(std::move(arguments));
  onComputer.environment = computer.environment();
  return runAndCheck(onComputer);
}

ProgramResult Package::runAndCheck(const ProgramCall& call) const {
  ProgramResult result = runProgram(call);
  const auto& arguments = call.arguments;
  const auto has = [&arguments](std::string_view option) {
    return std::any_of(arguments.begin(), arguments.end(),
                       [option](const std::string& text) { return text.starts_with(option); });
  };
  // Without a file of their own the traces stand in the document.
  const bool traced = has("-d=") && !has("-e");
  if (result.output.starts_with("<?xml") && !traced) {
    EXPECT_EQ(schemaErrors(result.output), "") << result.output;
  }
  const auto option = std::find(arguments.begin(), arguments.end(), "-o");
  if (result.output.empty() && option != arguments.end() && arguments.end() - option > 1) {
    const auto file = folder / *(option + 1);
    const std::string document = is_regular_file(file) ? readText(file) : "";
    if (!document.empty()) {
      EXPECT_EQ(schemaErrors(document), "") << document;
    }
  }
  return result;
}

}  // namespace tolvanix::test
