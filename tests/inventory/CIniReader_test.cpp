#include "inventory/CIniReader.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

#include "support/Files.h"

namespace tolvanix {
namespace {

using test::ScopedCurrentDirectory;
using test::TempDir;
using test::writeFile;
using Entries = std::vector<std::pair<std::string, int>>;

Entries read(std::string_view bytes) {
  const TempDir folder;
  const ScopedCurrentDirectory scope(folder.path());
  writeFile(folder / "test.ini", bytes);
  CIniReader reader(".\\test.ini");
  std::vector<VendorFilter> filters;
  reader.GetConfigFileEntries(filters);
  Entries entries;
  for (const VendorFilter& filter : filters) {
    entries.emplace_back(filter.sectionName, filter.vendorID);
  }
  return entries;
}

TEST(CIniReader, Sections_GiveTheirVendorsInFileOrder) {
  EXPECT_EQ(read("[NVIDIA]\nVendorID=10de\n[Intel]\nName=x\nVENDORID = 8086 ; chips\n"),
            (Entries{{"NVIDIA", 0x10DE}, {"Intel", 0x8086}}));
}

TEST(CIniReader, SameVendorTwice_StaysTwice) {
  EXPECT_EQ(read("[A]\nVendorID=8086\n[B]\nVendorID=\"8086\"\n"),
            (Entries{{"A", 0x8086}, {"B", 0x8086}}));
}

TEST(CIniReader, SectionWithoutUsableVendor_GivesZero) {
  EXPECT_EQ(read("[A]\n[B]\nVendorID=\n[C]\nVendorID=none\n"),
            (Entries{{"A", 0}, {"B", 0}, {"C", 0}}));
}

TEST(CIniReader, NoFileOrNoSections_GivesNoEntries) {
  EXPECT_EQ(read(""), Entries{});
  EXPECT_EQ(read("VendorID=8086\n"), Entries{});
  std::vector<VendorFilter> filters;
  CIniReader(".\\no such file.ini").GetConfigFileEntries(filters);
  EXPECT_TRUE(filters.empty());
}

TEST(CIniReader, HexValue_IsReadUpToTheFirstOtherCharacter) {
  EXPECT_EQ(CIniReader::ParseHexValue("10de"), 0x10DEU);
  EXPECT_EQ(CIniReader::ParseHexValue("  FFFFFFFFx"), 0xFFFFFFFFU);
  EXPECT_EQ(CIniReader::ParseHexValue("100000000"), 0U);
  EXPECT_EQ(CIniReader::ParseHexValue(""), 0U);
  EXPECT_EQ(CIniReader::ParseHexValue("zz"), 0U);
}

TEST(CIniReader, VendorBeyondSixteenBits_KeepsTheLowOnes) {
  EXPECT_EQ(read("[A]\nVendorID=18086\n"), (Entries{{"A", 0x8086}}));
}

}  // namespace
}  // namespace tolvanix
