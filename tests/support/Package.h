// A package's folder with the program in it, as an installer unpacks it.
#pragma once

#include "support/Computer.h"
#include "support/Files.h"
#include "support/Program.h"

namespace tolvanix::test {

// The helper program's place in a package.
inline constexpr char kHelperFile[] = "tolvanixhelper64/tolvanixhelper64.exe";

class Package {
 public:
  Package();

  // What a run leaves in the folder is there too.
  std::filesystem::path operator/(std::string_view name) const { return folder / name; }
  const std::filesystem::path& path() const { return folder.path(); }

  // A file of the package; `name` may have folders, which are made.
  void add(std::string_view name, std::string_view bytes) const;

  // The program, for runs that are no matter of `run`.
  std::filesystem::path program() const;

  // A run of the program in another folder than the package's. A document on standard output
  // that is no valid one fails the test.
  ProgramResult run(const Arguments& arguments) const;

  // What `tolvanixkit explain` says about a run that left its trace in trace.log. Its document must
  // agree, and its exit code comes last.
  std::string explained(const ProgramResult& result) const;

 private:
  TempDir folder;
};

// A run of tolvanixkit in the current folder.
ProgramResult runKit(const Arguments& arguments);

}  // namespace tolvanix::test
