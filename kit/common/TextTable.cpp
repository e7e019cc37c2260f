#include "common/TextTable.h"

#include <algorithm>

#include "common/DisplayWidth.h"

namespace tolvanix::kit {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kReadable = 20;  // what a text should keep,
constexpr std::size_t kShortest = 8;   // and what it keeps

// With a gap between the columns that there are.
std::size_t lineWidth(const std::vector<std::size_t>& widths) {
  std::size_t sum = 0;
  for (const std::size_t width : widths) sum += width > 0 ? width + kGap : 0;
  return sum > 0 ? sum - kGap : 0;
}

void appendLine(std::string& out, const std::vector<std::string>& cells,
                const std::vector<std::size_t>& widths) {
  std::size_t owed = 0;  // blanks before the next text; a line has none at its end
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (widths[i] == 0) continue;
    const std::string text = shortened(cells[i], widths[i]);
    if (!text.empty()) out.append(owed, ' ').append(text);
    owed = (text.empty() ? owed : 0) + widths[i] - displayWidth(text) + kGap;
  }
  out += '\n';
}

}  // namespace

std::string TextTable::format(std::optional<std::size_t> limit) const {
  std::vector<std::size_t> widths = naturalWidths();
  if (limit) fit(widths, *limit);
  std::vector<std::string> titles;
  std::vector<std::string> rules;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    titles.push_back(columns[i].title);
    rules.emplace_back(widths[i], '-');
  }
  std::string out;
  appendLine(out, titles, widths);
  appendLine(out, rules, widths);
  for (const auto& row : rows) appendLine(out, row, widths);
  return out;
}

std::vector<std::size_t> TextTable::naturalWidths() const {
  std::vector<std::size_t> widths(columns.size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (widths[i] > 0) widths[i] = std::max(widths[i], displayWidth(columns[i].title));
  }
  return widths;
}

void TextTable::fit(std::vector<std::size_t>& widths, std::size_t limit) const {
  const auto shrinks = [this](std::size_t i) {
    return columns[i].whenNarrow == Column::WhenNarrow::kIsShortened;
  };
  // Columns go until the texts have room enough to be read.
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::vector<std::size_t> tolerable = widths;
    for (std::size_t k = 0; k < columns.size(); ++k) {
      if (shrinks(k)) tolerable[k] = std::min(widths[k], kReadable);
    }
    if (lineWidth(tolerable) <= limit) break;
    if (columns[i].whenNarrow == Column::WhenNarrow::kIsLeftOut) widths[i] = 0;
  }
  // Of what is left, the longest texts lose most.
  while (lineWidth(widths) > limit) {
    std::size_t* longest = nullptr;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool may = shrinks(i) && widths[i] > kShortest;
      if (may && (longest == nullptr || widths[i] > *longest)) longest = &widths[i];
    }
    if (longest == nullptr) return;
    --*longest;
  }
}

}  // namespace tolvanix::kit
