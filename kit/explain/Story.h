// A run in words.
#pragma once

#include <string>

#include "explain/TracedRun.h"

namespace tolvanix::kit {

// What the run did and found, ending with a line for its exit code.
std::string storyOf(const TracedRun& run, int exitCode);

}  // namespace tolvanix::kit
