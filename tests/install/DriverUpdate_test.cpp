// Installations from INF files to the helper program, on a computer with one device.
#include "install/DriverUpdate.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "app/DeviceStatus.h"
#include "support/Files.h"
#include "support/Helper.h"
#include "support/ScopedRegistry.h"
#include "winapi/winapi.h"

namespace tolvanix {
namespace {

using test::placeHelper;
using test::ScopedCurrentDirectory;
using test::TempDir;
using test::writeFile;

const std::string kPresent = "PCI\\VEN_1DE4&DEV_0B01&SUBSYS_00011DE4";
const std::string kAbsent = "PCI\\VEN_1DE4&DEV_0B02&SUBSYS_00021DE4";

std::string readLines(const std::filesystem::path& file) {
  std::string text = test::readFile(file);
  std::erase(text, '\r');
  return text;
}

std::string fullPath(const char* name) {
  char path[MAX_PATH] = "";
  GetFullPathNameA(name, sizeof path, path, nullptr);
  return path;
}

class DriverUpdateTest : public ::testing::Test {
 protected:
  // An INF file with one model of that ID.
  void addInf(const char* name, const std::string& hardwareId) const {
    writeFile(dir / name,
              "[Version]\nSignature=\"$Windows NT$\"\nClass=System\n"
              "ClassGuid={4d36e97d-e325-11ce-bfc1-08002be10318}\n"
              "[Manufacturer]\nMaker=Models\n[Models]\nDevice=Install," +
                  hardwareId + "\n");
  }
  void addHelper(const std::string& steps) const {
    placeHelper(dir / "tolvanixhelper64/tolvanixhelper64.exe", steps);
  }
  static std::int32_t update(std::string hardwareId, const char* infName = nullptr) {
    return DriverUpdate(hardwareId.data(), infName, 0);
  }
  static std::int32_t check(std::string hardwareId, const char* infName = nullptr) {
    return DriverUpdate(hardwareId.data(), infName, 1);
  }

  TempDir dir;
  ScopedCurrentDirectory inDir{dir.path()};
  test::ScopedRegistry registry{
      {test::deviceKey("PCI\\VEN_1DE4&DEV_0B01\\1",
                       {test::listOf("HardwareID", {kPresent + "&REV_01", kPresent})})}};
};

TEST_F(DriverUpdateTest, NoHardwareId) {
  EXPECT_EQ(DriverUpdate(nullptr, nullptr, 0), kDeviceNullHardwareId);
  addInf("a.inf", kPresent);
  EXPECT_EQ(Win2kInstall(fullPath("a.inf").c_str(), nullptr, 0), kDeviceNoIdForInstall);
  EXPECT_EQ(Win2kInstall(fullPath("none.inf").c_str(), nullptr, 0), kDeviceInfNotOpened);
}

TEST_F(DriverUpdateTest, NoInfFile) {
  EXPECT_EQ(update(kPresent), kDeviceNoInfFiles);
  EXPECT_EQ(update(kPresent, "none.inf"), kDeviceNamedInfNotFound);
  std::filesystem::create_directory(dir / "folder.inf");
  EXPECT_EQ(update(kPresent), kDeviceInfNotOpened);
}

TEST_F(DriverUpdateTest, Install_GivesTheHelperTheCutIdAndTheFullPath) {
  addInf("a file.inf", kPresent);
  addHelper("record args.txt");
  std::string id = "pci\\VEN_1DE4&DEV_0B01&SUBSYS_00011DE4&REV_09";
  EXPECT_EQ(DriverUpdate(id.data(), nullptr, 0), kDeviceInstalled);
  EXPECT_STREQ(id.c_str(), "pci\\VEN_1DE4&DEV_0B01&SUBSYS_00011DE4");
  const auto helperFolder = dir / "tolvanixhelper64";
  EXPECT_EQ(readLines(helperFolder / "args.txt"), std::string(id.c_str()) + '\n' +
                                                      fullPath("a file.inf") + '\n' +
                                                      helperFolder.string() + '\n');
}

TEST_F(DriverUpdateTest, SearchGoesOn_UntilAnInstallation) {
  addInf("a.inf", kPresent);
  addInf("b.inf", kPresent);
  addInf("c.inf", "PCI\\VEN_FFFF&DEV_FFFF");
  addHelper("record args.txt\nexit 5");
  EXPECT_EQ(update(kPresent), kDeviceIdInNoInf);  // the last file's own status
  const auto tried = readLines(dir / "tolvanixhelper64/args.txt");
  EXPECT_LT(tried.find("a.inf"), tried.find("b.inf"));
  EXPECT_NE(tried.find("b.inf"), std::string::npos);

  std::filesystem::remove(dir / "tolvanixhelper64/args.txt");
  addHelper("record args.txt\nexit 0");
  EXPECT_EQ(update(kPresent), kDeviceInstalled);
  EXPECT_EQ(readLines(dir / "tolvanixhelper64/args.txt").find("b.inf"), std::string::npos);
}

TEST_F(DriverUpdateTest, NamedInfInAnotherFolder_StandsForThatOfTheCurrentOne) {
  addInf("sub/a.inf", kPresent);
  EXPECT_EQ(check(kPresent, "sub\\a.inf"), kDeviceInfNotOpened);
  addInf("a.inf", kPresent);
  EXPECT_EQ(check(kPresent, "sub\\a.inf"), kDeviceCheckFound);
}

}  // namespace
}  // namespace tolvanix
