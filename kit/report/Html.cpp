// The report as one page (page.html).
#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "report/Page.h"
#include "report/Report.h"

namespace tolvanix::kit {

namespace {

struct HtmlColumn {
  const char* title;
  const char* cssClass;
  std::string ReportRow::*text;
};

constexpr std::array<HtmlColumn, 8> kColumns = {{
    {"Computer", "computer", &ReportRow::computer},
    {"Place", "place", &ReportRow::place},
    {"Device", "device", &ReportRow::device},
    {"Hardware ID", "id", &ReportRow::hardwareId},
    {"Installed", "driver", &ReportRow::driver},
    {"Firmware", "firmware", &ReportRow::firmware},
    {"Package", "package", &ReportRow::package},
    {"Outcome", "outcome", &ReportRow::outcome},
}};

void appendEscaped(std::string& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      default:
        out += c;
    }
  }
}

void appendSum(std::string& out, const char* title, std::size_t count, const char* cssClass) {
  out.append("<div class=\"").append(count > 0 ? cssClass : "").append("\"><dt>").append(title);
  out.append("</dt><dd>").append(std::to_string(count)).append("</dd></div>\n");
}

std::string summary(const ReportSums& sums) {
  std::string out = "<dl class=\"sums\">\n";
  appendSum(out, "Computers", sums.computers, "");
  appendSum(out, "Devices", sums.devices, "");
  appendSum(out, "Installed", sums.installed, "good");
  appendSum(out, "Failed", sums.failed, "bad");
  appendSum(out, "Restart needed", sums.restarts.size(), "warn");
  out += "</dl>\n";
  if (sums.restarts.empty()) return out;
  out += "<p class=\"note\"><strong>Restart needed:</strong> ";
  for (const std::string& name : sums.restarts) {
    if (&name != &sums.restarts.front()) out += ", ";
    appendEscaped(out, name);
  }
  return out + "</p>\n";
}

const char* cssClass(ReportRow::Mood mood) {
  switch (mood) {
    case ReportRow::Mood::kGood:
      return "good";
    case ReportRow::Mood::kBad:
      return "bad";
    default:
      return "";
  }
}

// A hardware ID may be broken into lines between its parts.
void appendHardwareId(std::string& out, std::string_view id) {
  for (std::size_t end = id.find('&'); end != std::string_view::npos; end = id.find('&')) {
    appendEscaped(out, id.substr(0, end + 1));
    out += "<wbr>";
    id.remove_prefix(end + 1);
  }
  appendEscaped(out, id);
}

void appendOutcome(std::string& out, const ReportRow& row) {
  out += "<span class=\"mark\">";
  appendEscaped(out, row.outcome);
  out += "</span>";
  if (row.advice.empty()) return;
  out += "<small>";
  appendEscaped(out, row.advice);
  out += "</small>";
}

// An empty cell has nothing in it, so that a narrow page leaves it out.
void appendCell(std::string& out, const HtmlColumn& column, const ReportRow& row) {
  const std::string& text = row.*column.text;
  out.append("<td class=\"").append(column.cssClass).append("\" data-title=\"");
  out.append(column.title).append("\">");
  if (!text.empty()) {
    out += "<div>";
    if (column.text == &ReportRow::outcome) {
      appendOutcome(out, row);
    } else if (column.text == &ReportRow::hardwareId) {
      appendHardwareId(out, text);
    } else {
      appendEscaped(out, text);
    }
    if (column.text == &ReportRow::computer && row.restart) {
      out += "<span class=\"restart\">restart</span>";
    }
    out += "</div>";
  }
  out += "</td>";
}

// Those that have anything to show.
std::vector<HtmlColumn> shownColumns(const Report& report, const std::vector<ReportRow>& rows) {
  std::vector<HtmlColumn> shown;
  std::copy_if(kColumns.begin(), kColumns.end(), std::back_inserter(shown),
               [&](const HtmlColumn& c) {
                 if (c.text == &ReportRow::computer) return report.size() > 1;
                 return std::any_of(rows.begin(), rows.end(),
                                    [&c](const ReportRow& row) { return !(row.*c.text).empty(); });
               });
  return shown;
}

std::string table(const std::vector<HtmlColumn>& columns, const std::vector<ReportRow>& rows) {
  std::string out = "<thead><tr>";
  for (const HtmlColumn& column : columns) {
    out.append(R"(<th scope="col"><button type="button">)").append(column.title);
    out.append("</button></th>");
  }
  out += "</tr></thead>\n<tbody>\n";
  for (const ReportRow& row : rows) {
    out.append("<tr class=\"").append(cssClass(row.mood)).append("\">");
    for (const HtmlColumn& column : columns) appendCell(out, column, row);
    out += "</tr>\n";
  }
  return out + "</tbody>";
}

}  // namespace

std::string asHtml(const Report& report) {
  constexpr std::string_view kSummaryMark = "<!--summary-->\n";
  constexpr std::string_view kTableMark = "<!--table-->\n";
  constexpr std::size_t kSummary = kPage.find(kSummaryMark);
  constexpr std::size_t kTable = kPage.find(kTableMark);
  static_assert(kSummary != std::string_view::npos && kTable != std::string_view::npos);
  constexpr std::size_t kMiddle = kSummary + kSummaryMark.size();

  const std::vector<ReportRow> rows = rowsOf(report);
  std::string page(kPage.substr(0, kSummary));
  page += summary(sumsOf(report, rows));
  page += kPage.substr(kMiddle, kTable - kMiddle);
  page += table(shownColumns(report, rows), rows);
  page += kPage.substr(kTable + kTableMark.size() - 1);
  return page;
}

}  // namespace tolvanix::kit
