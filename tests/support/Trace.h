// The trace of a part of the program, for tests that run it in their own process.
#pragma once

#include <string>

#include "log/DebugWriter.h"
#include "support/Files.h"

namespace tolvanix::test {

// What level 4 traces while `work` runs. It goes through a file of the current folder.
template <typename Work>
std::string traceOf(Work work) {
  DebugWriter().initialize(kTraceSteps, kTargetFile, "trace.log");
  work();
  DebugWriter().initialize(0, kTargetNone, "");
  const std::string traced = readText("trace.log");
  return traced.substr(traced.find("trace.log\n") + 10);
}

}  // namespace tolvanix::test
