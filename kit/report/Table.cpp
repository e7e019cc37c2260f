// The report on a terminal.
#include "common/TextTable.h"
#include "common/Wording.h"
#include "report/Report.h"

namespace tolvanix::kit {

namespace {

std::string sentenceOf(const ReportSums& sums) {
  std::string text = counted(sums.computers, "computer") + ", " + counted(sums.devices, "device");
  if (sums.installed > 0) text += ", " + std::to_string(sums.installed) + " installed";
  if (sums.failed > 0) text += ", " + std::to_string(sums.failed) + " failed";
  text += ".\n";
  if (sums.restarts.empty()) return text;
  text += "Restart needed: ";
  for (const std::string& name : sums.restarts) {
    if (&name != &sums.restarts.front()) text += ", ";
    text += name;
  }
  return text + ".\n";
}

}  // namespace

std::string asTable(const Report& report, std::optional<std::size_t> limit) {
  using enum Column::WhenNarrow;
  TextTable table({{"Computer", kIsShortened},
                   {"Place", kIsLeftOut},
                   {"ID", kIsLeftOut},
                   {"Device", kIsShortened},
                   {"Installed", kStays},
                   {"Firmware", kIsLeftOut},
                   {"Package", kStays},
                   {"Outcome", kIsShortened}});
  const std::vector<ReportRow> rows = rowsOf(report);
  for (const ReportRow& row : rows) {
    table.addRow({report.size() > 1 ? row.computer : "", row.place, row.id, row.device, row.driver,
                  row.firmware, row.package, row.outcome});
  }
  return table.format(limit) + '\n' + sentenceOf(sumsOf(report, rows));
}

}  // namespace tolvanix::kit
