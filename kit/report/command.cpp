#include "report/command.h"

#include <optional>
#include <string>
#include <vector>

#include "common/Files.h"
#include "common/Outcome.h"
#include "common/Output.h"
#include "report/Report.h"

namespace tolvanix::kit {

namespace {

std::string formatted(const ReportOptions& options) {
  const Report report = readReport(options.files);
  if (options.format == "html") return asHtml(report);
  if (options.format == "json") return asJson(report);
  if (options.format == "csv") return asCsv(report);
  return asTable(report, options.output.empty() ? lineLimit() : std::nullopt);
}

}  // namespace

int report(const ReportOptions& options) {
  const std::string text = formatted(options);
  if (options.output.empty()) {
    print(text);
  } else {
    writeFile(options.output, text);
  }
  return kDone;
}

}  // namespace tolvanix::kit
