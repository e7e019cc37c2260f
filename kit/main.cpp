// The entry point: the command line of tolvanixkit.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "app/Version.h"
#include "check/command.h"
#include "common/Outcome.h"
#include "explain/command.h"
#include "report/command.h"

namespace tolvanix::kit {
namespace {

constexpr char kDescription[] =
    "For those who use Tolvanix and make packages for it.\n"
    "Exit codes: 0, 1 (there is something to look at), 2 (usage, or a file that cannot be used).";

std::string versionLine() {
  return "tolvanixkit " + std::to_string(kVersionMajor) + '.' + std::to_string(kVersionMinor) +
         '.' + std::to_string(kVersionBuild) + '.' + std::to_string(kVersionRevision);
}

int complain(const std::string& text) {
  std::fprintf(stderr, "tolvanixkit: %s\n", text.c_str());
  return kBadInput;
}

// Each command runs while the command line is parsed, and leaves its exit code.
int run(int argumentCount, char* arguments[]) {
  CLI::App app(kDescription, "tolvanixkit");
  app.set_version_flag("--version", versionLine());
  app.allow_windows_style_options(false);  // a name that begins with a slash is a file
  app.require_subcommand(1);
  int exitCode = kDone;
  addReport(app, exitCode);
  addExplain(app, exitCode);
  addCheck(app, exitCode);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return complain(std::string(error.what()) + " (see --help)");
  }
  return exitCode;
}

}  // namespace
}  // namespace tolvanix::kit

int main(int argumentCount, char* arguments[]) {
  using tolvanix::kit::complain;
  try {
    return tolvanix::kit::run(argumentCount, arguments);
  } catch (const std::bad_alloc&) {
    return complain("there is not enough memory");
  } catch (const std::exception& error) {
    return complain(error.what());
  }
}
