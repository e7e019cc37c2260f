// tolvanixkit explain: what a run did, and what to do about it.
#pragma once

#include <string>

namespace tolvanix::kit {

struct ExplainOptions {
  std::string trace;   // a file
  std::string result;  // the document of the same run; empty for none
};

// Returns the exit code. Throws BadInput.
int explain(const ExplainOptions& options);

}  // namespace tolvanix::kit
