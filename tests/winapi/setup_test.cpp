// Device sets, the driver keys of their devices, and INF files, to the documented behaviour. What
// INF files contain is compared with Wine (tests/checks/check_answers.py); here is how they are
// asked.
#include <gtest/gtest.h>

#include "support/Computer.h"
#include "support/Files.h"
#include "winapi/Owner.h"

namespace tolvanix::test {
namespace {

class DeviceSet : public testing::Test {
 protected:
  DeviceSet() { device.cbSize = sizeof device; }

  // Makes the present device with this first hardware ID the one that is asked for.
  void find(const std::string& hardwareId) {
    for (DWORD i = 0; SetupDiEnumDeviceInfo(set.get(), i, &device); ++i) {
      char id[200] = {};
      if (property(SPDRP_HARDWAREID, id, sizeof id) && id == hardwareId) return;
    }
    FAIL() << hardwareId << " is not among the present devices";
  }
  bool property(DWORD number, char* text, DWORD room) {
    return SetupDiGetDeviceRegistryPropertyA(set.get(), &device, number, &type,
                                             reinterpret_cast<BYTE*>(text), room, &size) != FALSE;
  }

  const Computer computer{fixture("computers/four_devices.reg")};
  const DeviceSetOwner set{
      SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES)};
  SP_DEVINFO_DATA device{};
  DWORD type = 0;
  DWORD size = 0;
};

TEST_F(DeviceSet, Property_TellsItsSizeAndTypeAndNeedsAllOfItsRoom) {
  find("PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4&REV_04");
  const std::string ids(
      "PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4&REV_04\0PCI\\VEN_1DF1&DEV_1502&SUBSYS_04931DF4\0",
      83);
  EXPECT_FALSE(property(SPDRP_HARDWAREID, nullptr, 0));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(type, REG_MULTI_SZ);
  ASSERT_EQ(size, ids.size() + 1);
  std::string buffer(size, '#');
  EXPECT_FALSE(property(SPDRP_HARDWAREID, buffer.data(), size - 1));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_EQ(buffer, std::string(size, '#')) << "one byte short leaves the buffer alone";
  EXPECT_TRUE(property(SPDRP_HARDWAREID, buffer.data(), size));
  EXPECT_EQ(buffer, ids + '\0');
  find("PCI\\VEN_1DF1&DEV_1E3A&SUBSYS_04931DF4&REV_04");
  EXPECT_FALSE(property(SPDRP_FRIENDLYNAME, buffer.data(), 10)) << "it has none";
  EXPECT_EQ(GetLastError(), ERROR_INVALID_DATA);
}

TEST_F(DeviceSet, DriverKey_AnswersWhatFits) {
  HKEY opened = nullptr;
  const auto open = [&opened](const char* driver) {
    const std::string path = R"(SYSTEM\CurrentControlSet\Control\Class\)" + std::string(driver);
    return static_cast<DWORD>(
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &opened));
  };
  EXPECT_EQ(open("{4d36e972-e325-11ce-bfc1-08002be10318}\\0002"), ERROR_FILE_NOT_FOUND);
  ASSERT_EQ(open("{4d36e972-e325-11ce-bfc1-08002be10318}\\0001"), ERROR_SUCCESS);
  const RegistryKeyOwner key(opened);
  char version[12] = "#";
  const auto query = [&](const char* name, DWORD room) {
    size = room;
    return static_cast<DWORD>(
        RegQueryValueExA(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(version), &size));
  };
  EXPECT_EQ(query("None", 12), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(query("driverVersion", 10), ERROR_MORE_DATA);
  EXPECT_EQ(size, 11U);
  EXPECT_STREQ(version, "#") << "one byte short leaves the buffer alone";
  EXPECT_EQ(query("driverVersion", 12), ERROR_SUCCESS);
  EXPECT_EQ(type, REG_SZ);
  EXPECT_STREQ(version, "12.15.22.6");
}

TEST_F(DeviceSet, Misuse_HasItsError) {
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 1000000, &device));
  EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
  EXPECT_FALSE(SetupDiEnumDeviceInfo(INVALID_HANDLE_VALUE, 0, &device));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
  device.cbSize = 0;
  EXPECT_FALSE(SetupDiEnumDeviceInfo(set.get(), 0, &device));
  EXPECT_EQ(GetLastError(), ERROR_INVALID_USER_BUFFER);
  EXPECT_EQ(SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

class Inf : public testing::Test {
 protected:
  static HINF open(const char* name, UINT* line = nullptr) {
    return SetupOpenInfFileA(name, nullptr, INF_STYLE_WIN4, line);
  }

  const CurrentTempDir folder;
};

TEST_F(Inf, Open_FailsWithItsErrorAndLine) {
  writeFile(folder / "good.inf", "[Version]\nSignature=\"$Windows NT$\"");
  writeFile(folder / "bad.inf", "; one\n[Version]\n\n[open\n");
  std::filesystem::create_directory(folder / "folder.inf");
  const struct {
    const char* name;
    DWORD error;
  } rows[] = {
      {"good.inf", ERROR_FILE_NOT_FOUND},  // the system's own folder is meant
      {".\\none.inf", ERROR_FILE_NOT_FOUND},  {".\\none\\x.inf", ERROR_PATH_NOT_FOUND},
      {".\\folder.inf", ERROR_ACCESS_DENIED}, {".\\bad.inf", ERROR_BAD_SECTION_NAME_LINE},
  };
  GUID guid{};
  char name[64] = "";
  for (const auto& row : rows) {
    EXPECT_FALSE(InfOwner(open(row.name))) << row.name;
    EXPECT_EQ(GetLastError(), row.error) << row.name;
    EXPECT_FALSE(SetupDiGetINFClassA(row.name, &guid, name, sizeof name, nullptr)) << row.name;
  }
  EXPECT_TRUE(InfOwner(open("./good.inf")));
  UINT line = 0;
  open(".\\bad.inf", &line);
  EXPECT_EQ(line, 4U);
}

TEST_F(Inf, StringField_SizesAndBuffers) {
  writeFile(folder / "test.inf",
            "[Version]\nSignature=\"$Windows NT$\"\n[S]\nk=%s%\n[Strings]\ns=abc\n");
  const InfOwner inf(open(".\\test.inf"));
  INFCONTEXT line{};
  EXPECT_FALSE(SetupFindFirstLineA(inf.get(), "none", nullptr, &line));
  EXPECT_NE(GetLastError(), ERROR_SUCCESS);
  ASSERT_TRUE(SetupFindFirstLineA(inf.get(), "S", nullptr, &line));
  DWORD size = 0;
  EXPECT_FALSE(SetupGetStringFieldA(&line, 2, nullptr, 0, &size));
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, nullptr, 0, &size));
  EXPECT_EQ(size, 4U);
  char text[4] = "x";
  EXPECT_FALSE(SetupGetStringFieldA(&line, 1, text, 3, nullptr));
  EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
  EXPECT_STREQ(text, "x");
  EXPECT_TRUE(SetupGetStringFieldA(&line, 1, text, 4, &size));
  EXPECT_STREQ(text, "abc");
}

}  // namespace
}  // namespace tolvanix::test
