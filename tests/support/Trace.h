// What the program traces, and which of it a test looks at.
#pragma once

#include <algorithm>
#include <sstream>

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

// The lines of a trace that begin with one of these texts.
inline std::string only(const std::string& trace, const std::vector<std::string>& beginnings) {
  std::istringstream in(trace);
  std::string kept;
  for (std::string line; std::getline(in, line);) {
    const bool keep = std::any_of(beginnings.begin(), beginnings.end(),
                                  [&line](const auto& b) { return line.starts_with(b); });
    if (keep) kept += line + '\n';
  }
  return kept;
}

}  // namespace tolvanix::test
