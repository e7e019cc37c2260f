#include "explain/command.h"

#include <optional>
#include <string>

#include "app/Status.h"
#include "common/Outcome.h"
#include "common/Output.h"
#include "common/ResultDocument.h"
#include "common/WrapLines.h"
#include "explain/Story.h"
#include "explain/TracedRun.h"

namespace tolvanix::kit {

namespace {

// A run that failed unexpectedly may not come to the end of its trace; its document says so.
int exitCodeOf(const TracedRun& run, const std::optional<int>& documented,
               const std::string& traceName) {
  if (run.exitCode) return *run.exitCode;
  if (documented == kUnspecifiedFailure) return *documented;
  throw BadInput(traceName + ": the trace is cut off: it does not say how the run ended");
}

}  // namespace

int explain(const ExplainOptions& options) {
  const TracedRun run = readTrace(options.trace);
  std::optional<int> documented;
  if (!options.result.empty()) documented = exitCodeOf(readResultDocument(options.result));
  const int exitCode = exitCodeOf(run, documented, options.trace);
  if (documented && *documented != exitCode) {
    throw BadInput(options.result + ": this document has exit code " + std::to_string(*documented) +
                   " and the trace " + std::to_string(exitCode) + ": they are of different runs");
  }
  print(wrapLines(storyOf(run, exitCode), lineLimit()));
  return kDone;
}

}  // namespace tolvanix::kit
