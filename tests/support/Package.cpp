#include "support/Package.h"

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
  return runProgram(call(std::move(arguments)));
}

ProgramResult Package::run(Arguments arguments, const Computer& computer) const {
  ProgramCall onComputer = call(std::move(arguments));
  onComputer.environment = computer.environment();
  return runProgram(onComputer);
}

}  // namespace tolvanix::test
