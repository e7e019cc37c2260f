// clang-format off: windows.h comes first.
#include <windows.h>
// clang-format on
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "support/Computer.h"
#include "support/Files.h"
#include "winapi/posix/machine/IndirectText.h"

namespace tolvanix::test {

namespace {

constexpr char kProgramSettings[] = R"(Software\Wine\AppDefaults\tolvanix.exe)";

// Ends the test as skipped unless this is Wine, whose registry is the tests' own. The export is how
// Wine can be recognised: https://wiki.winehq.org/Developer_FAQ
void skipUnlessWine() {
  if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr) return;
  constexpr char kReason[] = "the devices and drivers of a real computer stay as they are";
  [&kReason] { GTEST_SKIP() << kReason; }();
  // The skip is recorded, but the caller would go on. GoogleTest takes this exception for a failure
  // that it has recorded already, so it ends the test and adds nothing.
  throw testing::AssertionException(
      testing::TestPartResult(testing::TestPartResult::kSkip, __FILE__, __LINE__, kReason));
}

// The export as UTF-8 without a byte-order mark.
std::string readExport(const std::filesystem::path& file) {
  const std::string bytes = readFile(file);
  if (!bytes.starts_with("\xFF\xFE"))
    return bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0);
  const std::u8string text =
      std::filesystem::path(
          std::wstring(reinterpret_cast<const wchar_t*>(bytes.data() + 2), bytes.size() / 2 - 1))
          .u8string();  // a path converts any text
  return {text.begin(), text.end()};
}

// The key of a section's line when it is a device or a driver: the rest would change the system
// that Wine presents. Wine's two control sets are not the same.
std::string deviceOrDriverKey(const std::string& line) {
  static const std::regex pattern(
      R"(\[-?HKEY_LOCAL_MACHINE\\SYSTEM\\(?:CurrentControlSet|ControlSet001)\\)"
      R"((Enum\\[^\\]+\\[^\\]+.*|Control\\Class\\[^\\]+\\\d{4}.*)\]\s*)",
      std::regex::icase);
  std::smatch match;
  if (!std::regex_match(line, match, pattern)) return "";
  return R"(SYSTEM\CurrentControlSet\)" + match[1].str();
}

// Gives a device's texts the form that Windows gives them to programs; Wine leaves them as stored.
void resolveTexts(const std::string& key) {
  for (const char* const name : {"DeviceDesc", "FriendlyName", "LocationInformation"}) {
    char stored[1000] = "";
    DWORD size = sizeof stored;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), name,
                     RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, nullptr, stored,
                     &size) != ERROR_SUCCESS) {
      continue;
    }
    if (const auto text = winapi::resolveIndirectText(stored)) {
      RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text->c_str(),
                      static_cast<DWORD>(text->size() + 1));
    } else {
      RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name);
    }
  }
}

// Wine's name for the export's version of the system; "" when the export has none.
std::string windowsVersion(const std::string& text) {
  static const std::regex ten("\"CurrentMajorVersionNumber\"=dword:0000000a", std::regex::icase);
  static const std::regex older("\"CurrentVersion\"=\"(6\\.[123])\"", std::regex::icase);
  std::smatch match;
  if (std::regex_search(text, ten)) return "win10";
  if (!std::regex_search(text, match, older)) return "";
  return match[1] == "6.1" ? "win7" : match[1] == "6.2" ? "win8" : "win81";
}

void importKeys(const std::string& text) {
  const TempDir folder;
  const std::filesystem::path wide = std::u8string(text.begin(), text.end());
  writeFile(folder / "import.reg",
            text.starts_with("REGEDIT4") ? text : utf16File(wide.u16string()));
  const std::string command = "reg import " + (folder / "import.reg").string() + " >NUL 2>&1";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("cannot import " + text);
}

void deleteKeys(const std::vector<std::string>& keys) {
  for (const std::string& key : keys) RegDeleteTreeA(HKEY_LOCAL_MACHINE, key.c_str());
}

}  // namespace

Computer::Computer(const std::filesystem::path& registryExport) {
  skipUnlessWine();
  const std::string text = readExport(registryExport);
  std::string kept = text.substr(0, text.find_first_of("\r\n")) + "\n\n";
  if (kept != "Windows Registry Editor Version 5.00\n\n" && kept != "REGEDIT4\n\n") {
    throw std::runtime_error(registryExport.string() + " is no registry export");
  }
  std::vector<std::string> keys;  // the imported ones, below HKEY_LOCAL_MACHINE
  std::istringstream lines(text);
  bool keep = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('[')) {
      const std::string key = deviceOrDriverKey(line);
      keep = !key.empty();
      if (!keep) continue;
      keys.push_back(key);
      const bool deleted = line[1] == '-';
      line = (deleted ? "[-HKEY_LOCAL_MACHINE\\" : "[HKEY_LOCAL_MACHINE\\") + key + ']';
      // Wine wants it of a device; the export's own comes after it.
      if (!deleted) line += "\n\"ClassGUID\"=\"{00000000-0000-0000-0000-000000000000}\"";
    }
    if (keep) kept += line + '\n';
  }
  deleteKeys(keys);  // a driver key of the export may be one of Wine's own
  end = std::shared_ptr<void>(nullptr, [keys](void* /*none*/) {
    deleteKeys(keys);
    RegDeleteTreeA(HKEY_CURRENT_USER, kProgramSettings);
  });
  importKeys(kept);
  for (const std::string& key : keys) resolveTexts(key);
  if (const std::string version = windowsVersion(text); !version.empty()) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kProgramSettings, "Version", REG_SZ, version.c_str(),
                    static_cast<DWORD>(version.size() + 1));
  }
}

}  // namespace tolvanix::test
