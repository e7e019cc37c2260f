#include "install/CInf.h"

#include <gtest/gtest.h>

#include <string>

#include "install/DevHelper.h"
#include "log/DebugWriter.h"
#include "support/Files.h"

namespace tolvanix::test {
namespace {

constexpr char kVersion[] =
    "[Version]\nSignature=\"$Windows NT$\"\nClass=Display\n"
    "ClassGuid={4d36e968-e325-11ce-bfc1-08002be10318}\n";

class CInfTest : public testing::Test {
 protected:
  void write(const std::string& text) const { writeFile(folder / "test.inf", kVersion + text); }

  static DWORD search(const std::string& wanted) {
    CInf inf;
    EXPECT_EQ(inf.Open("test.inf", 0), ERROR_SUCCESS);
    inf.setHardwareId(wanted);
    return inf.EnumManufacturers();
  }

  // What such an action traces.
  template <typename Action>
  static std::string trace(const Action& action) {
    DebugWriter().initialize(kTraceSteps, kTargetFile, "trace.log");
    action();
    DebugWriter().initialize(0, kTargetNone, "");
    const std::string text = readText("trace.log");
    return text.substr(text.find("trace.log\n") + 10);
  }

  const CurrentTempDir folder;
};

TEST_F(CInfTest, Open_FindsPathClassAndGuid) {
  for (const char* const text :
       {kVersion, "[Version]\nSignature=\"$Windows NT$\"\nClass=Display\n"}) {
    writeFile(folder / "test.inf", text);
    for (const char* const name : {"test.inf", "\"test.inf\"", ".\\test.inf"}) {
      CInf inf;
      EXPECT_EQ(inf.Open(name, 0), ERROR_SUCCESS) << name;
      EXPECT_EQ(inf.getPath(), SPString(".\\test.inf"));
      EXPECT_EQ(inf.getClassName(), SPString("Display"));
      EXPECT_EQ(inf.getClassGuid().Data1, 0x4d36e968U);
    }
  }
}

TEST_F(CInfTest, Open_UnusableFile_GivesAnError) {
  EXPECT_EQ(CInf().Open("none.inf", 0), ERROR_FILE_NOT_FOUND);
  writeFile(folder / "test.inf", "[Version]\n");
  EXPECT_EQ(CInf().Open("test.inf", 0), ERROR_WRONG_INF_STYLE);
  writeFile(folder / "test.inf", "[Version]\nSignature=\"$Windows NT$\"\n");
  EXPECT_NE(CInf().Open("test.inf", 0), ERROR_SUCCESS);  // no class
}

TEST_F(CInfTest, Ids_MatchWhenOneContainsTheOther) {
  const std::string full = "PCI\\VEN_8086&DEV_1234&SUBSYS_0001ABCD";
  const struct {
    std::string fields;  // of the model's line, behind its section
    std::string wanted;
    bool matches;
  } rows[] = {
      {"," + full, full, true},
      {"," + full + "&REV_02", full, true},
      {", pci\\ven_8086&dev_1234", full, true},
      {"," + full, "pci\\ven_8086&dev_1234", true},
      {", USB\\OTHER, PCI\\NONE," + full, full, true},
      {"", full, true},  // no ID counts as an empty one
      {",x," + std::string(400, 'y') + "," + full, full, true},
      {", PCI\\VEN_8086&DEV_1235", full, false},
      {"," + full + "&rev_02x", full + "&REV_03", false},
      {"," + std::string(300, 'x'), full, false},
  };
  for (const auto& row : rows) {
    write("[Manufacturer]\nMaker=Models\n[Models]\nDevice=Install" + row.fields + "\n");
    EXPECT_EQ(search(row.wanted) == ERROR_SUCCESS, row.matches) << row.fields;
  }
}

TEST_F(CInfTest, Search_LooksUnderEveryDecoration) {
  write(
      "[Manufacturer]\n%a%=A,NT,NTamd64.6.1\nb=B\n[A]\none=i,PCI\\1\n[A.NTamd64.6.1]\n"
      "%two%=i,PCI\\2\n[B]\nthree=i,PCI\\3\n[C]\nfour=i,PCI\\4\n[Strings]\na=Maker A\ntwo=Two\n");
  CInf inf;
  ASSERT_EQ(inf.Open("test.inf", 0), ERROR_SUCCESS);
  inf.setHardwareId("PCI\\2");
  EXPECT_EQ(inf.EnumManufacturers(), ERROR_SUCCESS);
  EXPECT_EQ(inf.getManufacturer(), SPString("Maker A"));
  EXPECT_EQ(inf.getDescription(), SPString("Two"));
  inf.setHardwareId("PCI\\4");
  EXPECT_EQ(inf.EnumManufacturers(), ERROR_NO_MORE_ITEMS);
  EXPECT_EQ(inf.getManufacturer(), SPString("b"));
  EXPECT_EQ(inf.getDescription(), SPString("three"));
  EXPECT_EQ(inf.EnumDevices("C"), ERROR_SUCCESS);
  EXPECT_NE(inf.EnumDevices("D"), ERROR_SUCCESS);
}

TEST_F(CInfTest, Decorations_AreSearchedUpToFieldNinetyNine) {
  std::string decorations;
  for (int field = 2; field <= 100; ++field) decorations += ",D" + std::to_string(field);
  write("[Manufacturer]\nm=M" + decorations + "\n[M.D99]\na=i,PCI\\99\n[M.D100]\na=i,PCI\\100\n");
  EXPECT_EQ(search("PCI\\99"), ERROR_SUCCESS);
  EXPECT_EQ(search("PCI\\100"), ERROR_NO_MORE_ITEMS);
}

TEST_F(CInfTest, ModelLineWithoutKey_EndsItsSectionOnly) {
  write("[Manufacturer]\nm=M,NT\n[M]\na=i,PCI\\1\ni,PCI\\2\nb=i,PCI\\3\n[M.NT]\nc=i,PCI\\4\n");
  EXPECT_EQ(search("PCI\\3"), ERROR_NO_MORE_ITEMS);
  EXPECT_EQ(search("PCI\\4"), ERROR_SUCCESS);
}

TEST_F(CInfTest, Trace_NamesEverySectionAndLine) {
  write(
      "[Manufacturer]\n%m%=M,NT,None\n[M.NT]\na=i,PCI\\1,PCI\\11\n%c%=k,USB\\2,PCI\\3\n"
      "[Strings]\nm=Maker\nc=100% C\n");
  EXPECT_EQ(trace([] { search("pci\\3"); }),
            "EnumManufacturers->EnumDevices for mfg 1, Maker:M.\n"
            "EnumDevices for model, M: no devices found.\n"
            "EnumManufacturers->EnumDevices for mfg 2, Maker:M.NT.\n"
            "EnumDevices for model, a:i\n"
            "Search for HwID pci\\3: not found.\n"
            "EnumDevices for model, 100% C:k\n"
            "Search for HwID pci\\3: found. i = 1\n");
  write("");
  EXPECT_TRUE(trace([] {
                EXPECT_NE(search("PCI\\1"), ERROR_SUCCESS);
              }).starts_with("\nCInf::EnumManufacturers, line = "));
  EXPECT_EQ(trace([] { PrintError(ERROR_LINE_NOT_FOUND, "Place", 12); }),
            "\nPlace, line = 12, error code = -536870654, error msg = \n");
}

}  // namespace
}  // namespace tolvanix::test
