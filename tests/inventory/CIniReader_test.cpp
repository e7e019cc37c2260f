#include "inventory/CIniReader.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Files.h"

namespace tolvanix::test {
namespace {

TEST(CIniReader, Sections_GiveTheirVendorsInFileOrder) {
  using Entries = std::vector<std::pair<std::string, int>>;
  const struct {
    std::string file;
    Entries entries;
  } rows[] = {
      {"[NVIDIA]\nVendorID=10de\n[Intel]\nName=x\nVENDORID = 8086 ; chips\n",
       {{"NVIDIA", 0x10DE}, {"Intel", 0x8086}}},
      {"[A]\nVendorID=8086\n[B]\nVendorID=\"8086\"\n", {{"A", 0x8086}, {"B", 0x8086}}},
      {"[A]\n[B]\nVendorID=\n[C]\nVendorID=none\n", {{"A", 0}, {"B", 0}, {"C", 0}}},
      {"[A]\nVendorID=18086\n", {{"A", 0x8086}}},  // the low 16 bits
      {"VendorID=8086\n", {}},
      {"", {}},
  };
  const CurrentTempDir folder;
  for (const auto& row : rows) {
    writeFile(folder / "test.ini", row.file);
    std::vector<VendorFilter> filters;
    CIniReader(".\\test.ini").GetConfigFileEntries(filters);
    Entries entries;
    for (const auto& [section, vendor] : filters) entries.emplace_back(section, vendor);
    EXPECT_EQ(entries, row.entries) << row.file;
  }
}

TEST(CIniReader, HexValue_IsReadUpToTheFirstOtherCharacter) {
  EXPECT_EQ(CIniReader::ParseHexValue("  FFFFFFFFx"), 0xFFFFFFFFU);
  EXPECT_EQ(CIniReader::ParseHexValue("100000000"), 0U);
  EXPECT_EQ(CIniReader::ParseHexValue("zz"), 0U);
}

}  // namespace
}  // namespace tolvanix::test
