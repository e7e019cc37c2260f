#include "report/command.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/Files.h"
#include "common/Outcome.h"
#include "common/Output.h"
#include "report/Report.h"

namespace tolvanix::kit {

namespace {

struct Options {
  std::vector<std::string> files;
  std::string format = "table";
  std::string output;
};

std::string formatted(const Options& options) {
  const Report report = readReport(options.files);
  if (options.format == "html") return asHtml(report);
  if (options.format == "json") return asJson(report);
  if (options.format == "csv") return asCsv(report);
  return asTable(report, options.output.empty() ? lineLimit() : std::nullopt);
}

}  // namespace

void addReport(CLI::App& app, int& exitCode) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand(
      "report", "shows the documents that tolvanix wrote on one or many computers as one table");
  command
      ->add_option("FILE", options->files,
                   "a document of -i, -u or -uhid; its name is that of "
                   "the computer")
      ->required();
  command->add_option("--format", options->format, "table, html, json or csv")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"table", "html", "json", "csv"}))
      ->capture_default_str();
  command->add_option("-o", options->output, "writes to this file, not to standard output")
      ->type_name("FILE");
  command->callback([options, &exitCode] {
    const std::string text = formatted(*options);
    if (options->output.empty()) {
      print(text);
    } else {
      writeFile(options->output, text);
    }
    exitCode = kDone;
  });
}

}  // namespace tolvanix::kit
