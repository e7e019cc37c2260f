// Prints what the platform reports about files, so that platforms can be compared
// (tests/checks/check_answers.py): platform_answers inf|profile|devices FOLDER
#include <array>
#include <bit>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Computer.h"
#include "winapi/Owner.h"

namespace tolvanix {
namespace {

void print(std::string_view text, char mark = '|') {
  std::putchar(mark);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    std::printf(byte < ' ' || c == '|' || c == '\\' ? "\\x%02X" : "%c", byte);
  }
}

std::optional<std::string> field(INFCONTEXT& line, DWORD index) {
  DWORD size = 0;
  if (SetupGetStringFieldA(&line, index, nullptr, 0, &size) == FALSE) return std::nullopt;
  std::string text(size, '\0');
  SetupGetStringFieldA(&line, index, text.data(), size, nullptr);
  text.pop_back();
  return text;
}

// Each line with its key, its fields and the first that is none; gives back the fields.
std::vector<std::vector<std::string>> printSection(HINF inf, const std::string& name) {
  std::vector<std::vector<std::string>> lines;
  INFCONTEXT line{};
  BOOL found = SetupFindFirstLineA(inf, name.c_str(), nullptr, &line);
  for (; found != FALSE; found = SetupFindNextLine(&line, &line)) {
    print(name);
    auto& fields = lines.emplace_back();
    for (DWORD i = 0; i <= SetupGetFieldCount(&line) + 1; ++i) {
      const auto text = field(line, i);
      if (text && i > 0) fields.push_back(*text);
      text ? print(*text) : print("", '-');
    }
    std::putchar('\n');
  }
  return lines;
}

void printInf(const char* file) {
  const InfOwner inf(SetupOpenInfFileA(file, nullptr, INF_STYLE_WIN4, nullptr));
  if (!inf) {
    std::printf("error %08X\n", static_cast<unsigned>(GetLastError()));
    return;
  }
  GUID guid{};
  char name[64] = "";
  SetLastError(ERROR_SUCCESS);
  // Wine returns TRUE also when the name does not fit.
  if (SetupDiGetINFClassA(file, &guid, name, sizeof name, nullptr) != FALSE &&
      GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
    std::printf("class");
    print(name);
    for (const auto byte : std::bit_cast<std::array<unsigned char, 16>>(guid)) {
      std::printf(" %02X", byte);
    }
    std::putchar('\n');
  }
  for (const auto& maker : printSection(inf.get(), "Manufacturer")) {
    for (std::size_t i = 0; i < maker.size(); ++i) {
      printSection(inf.get(), i == 0 ? maker[0] : maker[0] + '.' + maker[i]);
    }
  }
}

void printProfile(const char* file) {
  constexpr unsigned kMostSections = 3;  // Wine takes long
  char names[30000];
  print({names, GetPrivateProfileSectionNamesA(names, 12, file)});
  print({names, GetPrivateProfileSectionNamesA(names, sizeof names, file)});
  std::putchar('\n');
  const char* name = names;
  for (unsigned i = 0; *name != '\0' && i < kMostSections; name += std::strlen(name) + 1, ++i) {
    for (const char* const key :
         {"a", "B", "c d", "", "VendorID", "Signature", "Class", "ClassGUID"}) {
      print(name);
      print(key);
      for (const DWORD size : {5U, 255U}) {
        char value[255];
        print({value, GetPrivateProfileStringA(name, key, "none  ", value, size, file)});
      }
      std::putchar('\n');
    }
  }
}

// A registry value or a property with its type, or the error in place of it.
void printValue(DWORD error, DWORD type, std::string_view bytes) {
  std::printf(error == ERROR_SUCCESS ? " %u" : " error %u",
              static_cast<unsigned>(error == ERROR_SUCCESS ? type : error));
  if (error == ERROR_SUCCESS) print(bytes);
}

void printDriver(const std::string& driver) {
  HKEY opened = nullptr;
  const std::string path = R"(SYSTEM\CurrentControlSet\Control\Class\)" + driver;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &opened) != 0) return;
  const RegistryKeyOwner key(opened);
  for (const char* const name : {"DriverVersion", "DriverDesc", "ProviderName", "InfPath",
                                 "InfSection", "DriverDate", "DriverDateData", "Number", ""}) {
    char bytes[1000];
    DWORD type = 0;
    DWORD size = sizeof bytes;
    const LSTATUS error =
        RegQueryValueExA(key.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(bytes), &size);
    printValue(static_cast<DWORD>(error), type, {bytes, error == 0 ? size : 0});
  }
}

void printDevices(const std::filesystem::path& registryExport) {
  const test::Computer computer(registryExport);
  const DeviceSetOwner set(
      SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD i = 0; SetupDiEnumDeviceInfo(set.get(), i, &device) != FALSE; ++i) {
    char bytes[4000];
    const DWORD properties[] = {SPDRP_HARDWAREID, SPDRP_FRIENDLYNAME, SPDRP_DEVICEDESC,
                                SPDRP_LOCATION_INFORMATION, SPDRP_DRIVER};
    for (const DWORD property : properties) {
      std::memset(bytes, 0, sizeof bytes);
      DWORD type = 0;
      DWORD size = 0;
      const BOOL done = SetupDiGetDeviceRegistryPropertyA(
          set.get(), &device, property, &type, reinterpret_cast<BYTE*>(bytes), sizeof bytes, &size);
      printValue(done != FALSE ? ERROR_SUCCESS : GetLastError(), type, {bytes, size});
    }
    if (*bytes != '\0') printDriver(bytes);
    std::putchar('\n');
  }
}

}  // namespace
}  // namespace tolvanix

int main(int argc, char** argv) try {
  if (argc != 3) return 1;
  const std::string kind = argv[1];
  for (const auto& entry : std::filesystem::directory_iterator(argv[2])) {
    const std::string file = entry.path().string();
    std::printf("== %s\n", entry.path().filename().string().c_str());
    if (kind == "inf") tolvanix::printInf(file.c_str());
    if (kind == "profile") tolvanix::printProfile(file.c_str());
    if (kind == "devices") tolvanix::printDevices(file);
  }
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
