// A table of text for a terminal.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvanix::kit {

struct Column {
  std::string title;
  // What becomes of it when the table is too wide.
  enum class WhenNarrow { kStays, kIsShortened, kIsLeftOut } whenNarrow;
};

class TextTable {
 public:
  explicit TextTable(std::vector<Column> tableColumns) : columns(std::move(tableColumns)) {}

  // One text for each column, valid UTF-8.
  void addRow(std::vector<std::string> cells) { rows.push_back(std::move(cells)); }

  // Aligned, with a line of titles. Columns without any text are left out. With a limit, as many
  // columns of a terminal, lines are kept within it as far as can be.
  std::string format(std::optional<std::size_t> limit) const;

 private:
  std::vector<std::size_t> naturalWidths() const;
  void fit(std::vector<std::size_t>& widths, std::size_t limit) const;

  std::vector<Column> columns;
  std::vector<std::vector<std::string>> rows;
};

}  // namespace tolvanix::kit
