#include "report/command.h"

#include <CLI/CLI.hpp>

namespace tolvanix::kit {

void addReport(CLI::App& app, int& /*exitCode*/) {
  app.add_subcommand("report", "shows what result documents say");
}

}  // namespace tolvanix::kit
