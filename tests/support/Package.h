// A package's folder with the program in it, as an installer unpacks it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "support/Computer.h"
#include "support/Files.h"
#include "support/Program.h"

namespace tolvanix::test {

using Arguments = std::vector<std::string>;

class Package {
 public:
  Package();

  // What a run leaves in the folder is there too.
  std::filesystem::path operator/(std::string_view name) const { return folder / name; }
  const std::filesystem::path& path() const { return folder.path(); }

  // A file of the package; `name` may have folders, which are made.
  void add(std::string_view name, std::string_view bytes) const;
  void addCopy(std::string_view name, const std::filesystem::path& original) const;

  // A run of the program in another folder than the package's, and on the computer where one is
  // given, else on this one. A result document that is no valid one fails the test.
  ProgramResult run(Arguments arguments) const;
  ProgramResult run(Arguments arguments, const Computer& computer) const;
  // The same, for the caller to change before it runs.
  ProgramCall call(Arguments arguments) const;

 private:
  ProgramResult runAndCheck(const ProgramCall& call) const;

  TempDir folder;
};

}  // namespace tolvanix::test
