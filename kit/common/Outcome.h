// How a command ends: its exit code, or a complaint about what it was given.
#pragma once

#include <stdexcept>

namespace tolvanix::kit {

enum ExitCode : int {
  kDone = 0,
  kFindings = 1,  // done, and there is something to look at
  kBadInput = 2,  // the command line or a file that it names
};

// Ends the command with kBadInput. The text is one line for the user; it names the file.
class BadInput : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace tolvanix::kit
