// The entry point: the command line of tolvanixkit.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <tuple>

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

// Each of these adds a command, which runs while the command line is parsed and leaves its exit
// code.

void addReport(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<ReportOptions>();
  CLI::App* const command = app.add_subcommand(
      "report", "shows the documents that tolvanix wrote on one or many computers as one table");
  command
      ->add_option("FILE", options->files,
                   "a document of -i, -u or -uhid; its name is that of the computer")
      ->required();
  command->add_option("--format", options->format, "table, html, json or csv")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"table", "html", "json", "csv"}))
      ->capture_default_str();
  command->add_option("-o", options->output, "writes to this file, not to standard output")
      ->type_name("FILE");
  command->callback([options, &exitCode] { exitCode = report(*options); });
}

void addExplain(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App* const command = app.add_subcommand(
      "explain", "says from a trace what a run did, why it ended so, and what to do about it");
  command->add_option("TRACE", options->trace, "the trace of a run with -d=4 -e TRACE")->required();
  command->add_option("RESULT", options->result, "the result document of the same run");
  command->callback([options, &exitCode] { exitCode = explain(*options); });
}

void addCheck(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App* const command =
      app.add_subcommand("check", "says whether a folder is a package that will work");
  command->add_option("PACKAGE", options->package, "the folder of the package")->required();
  CLI::Option* const computers = command->add_option(
      "COMPUTER", options->computers,
      "a registry export or a copy of a /sys tree: the package is tried on a copy (Linux only)");
  const auto absolute = [](const std::string& name) {
    return std::filesystem::absolute(name).string();
  };
  for (const auto& [name, path, help] :
       {std::tuple{"--library", &options->substitutes.validationLibrary,
                   "a validation library for Linux in place of the package's own"},
        std::tuple{"--helper", &options->substitutes.helperProgram,
                   "a helper program for Linux in place of the package's own"}}) {
    command->add_option(name, *path, help)
        ->check(CLI::ExistingFile)
        ->transform(absolute)
        ->type_name("FILE")
        ->needs(computers);
  }
  command->callback([options, &exitCode] { exitCode = check(*options); });
}

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
