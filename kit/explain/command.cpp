#include "explain/command.h"

#include <CLI/CLI.hpp>

namespace tolvanix::kit {

void addExplain(CLI::App& app, int& /*exitCode*/) {
  app.add_subcommand("explain", "says what a run did, and why");
}

}  // namespace tolvanix::kit
