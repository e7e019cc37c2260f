// Runs of a package on copies of computers; the originals are only read. Linux only.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "check/TemporaryFolder.h"
#include "common/ResultDocument.h"

namespace tolvanix::kit {

// What takes part in a run. The programs, each an empty path for none, replace the package's own.
struct TrialParts {
  std::filesystem::path program;
  std::filesystem::path validationLibrary;
  std::filesystem::path helperProgram;
  std::string description;  // the name of package.xml
};

struct TrialRun {
  int exitCode = 0;
  ResultDocument result;                // without anything when the run left none
  std::string validation;               // the validation document; empty for none
  std::vector<std::string> complaints;  // lines about the computer,
  std::vector<std::string> said;        // and what else came on standard error
};

class Trial {
 public:
  // Copies the package, which is the current folder.
  explicit Trial(const TrialParts& parts);

  // Runs -u on a copy of the computer. Failures to copy throw filesystem_error.
  TrialRun run(const std::filesystem::path& computer) const;

  // Where a run's validation document is kept until the next run.
  std::string validationFile() const { return folder.file("validation.xml"); }

 private:
  TemporaryFolder folder;
  std::string description;
};

}  // namespace tolvanix::kit
