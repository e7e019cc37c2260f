// What the kit writes on a terminal.
#include "common/TextTable.h"

#include <gtest/gtest.h>

#include "common/WrapLines.h"

namespace tolvanix::kit {
namespace {

TEST(TextTable, LineLimit_LeavesOutColumnsThenShortensTheLongest) {
  using enum Column::WhenNarrow;
  TextTable table({{"Place", kIsLeftOut},
                   {"Name", kIsShortened},
                   {"Nothing", kStays},
                   {"Version", kStays},
                   {"Outcome", kIsShortened}});
  table.addRow({"0:1.0", "A name of thirty characters...", "", "10.0.19041.3636", "installed"});
  const std::string start = "Place  Name                            Version          Outcome\n";
  EXPECT_EQ(table.format(std::nullopt).find(start), 0U);
  EXPECT_EQ(table.format(65).find(start), 0U);
  EXPECT_EQ(table.format(60),
            "Place  Name                       Version          Outcome\n"
            "-----  -------------------------  ---------------  ---------\n"
            "0:1.0  A name of thirty charact\u2026  10.0.19041.3636  installed\n");
  EXPECT_EQ(table.format(48),
            "Name                  Version          Outcome\n"
            "--------------------  ---------------  ---------\n"
            "A name of thirty ch\u2026  10.0.19041.3636  installed\n");
  EXPECT_EQ(table.format(1),
            "Name      Version          Outcome\n"
            "--------  ---------------  --------\n"
            "A name \u2026  10.0.19041.3636  install\u2026\n");
}

TEST(WrapLines, LongLines_AreBrokenAtBlanksAndIndented) {
  const char* const text = "  one two three\n\nfour alongwordalone\n";
  EXPECT_EQ(wrapLines(text, std::nullopt), text);
  EXPECT_EQ(wrapLines(text, 10), "  one two\n    three\n\nfour\n  alongwordalone\n");
}

}  // namespace
}  // namespace tolvanix::kit
