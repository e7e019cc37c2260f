// clang-format off: windows.h comes first.
#include <windows.h>
// clang-format on

#include <regex>
#include <sstream>
#include <stdexcept>

#include "support/Computer.h"
#include "support/Files.h"
#include "support/Program.h"
#include "winapi/posix/IndirectText.h"

namespace tolvanix::test {

namespace {

constexpr char kProgramSettings[] = R"(Software\Wine\AppDefaults\tolvanix.exe)";

std::wstring widen(const std::string& text) {
  const int bytes = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), bytes)));
  return wide;
}

std::string narrow(const std::wstring& text) {
  const int units = static_cast<int>(text.size());
  std::string utf8(3 * text.size(), '\0');
  utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(
      CP_UTF8, 0, text.data(), units, utf8.data(), 3 * units, nullptr, nullptr)));
  return utf8;
}

// The export as UTF-8 without a byte-order mark.
std::string readExport(const std::filesystem::path& file) {
  std::string bytes = readFile(file);
  if (bytes.starts_with("\xFF\xFE")) {
    return narrow({reinterpret_cast<const wchar_t*>(bytes.data() + 2), (bytes.size() - 2) / 2});
  }
  return bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;
}

// The key of a section's line when it is a device or a driver: the rest would change the system
// that Wine presents.
std::string deviceOrDriverKey(const std::string& line) {
  static const std::regex pattern(
      R"(\[HKEY_LOCAL_MACHINE\\(SYSTEM\\(?:CurrentControlSet|ControlSet001)\\)"
      R"((?:Enum\\[^\\]+\\[^\\]+\\.+|Control\\Class\\[^\\]+\\\d{4}.*))\]\r?)",
      std::regex::icase);
  std::smatch match;
  return std::regex_match(line, match, pattern) ? match[1].str() : "";
}

// The line as Windows gives the text of a property to programs, which Wine leaves as it is stored;
// empty where that is nothing.
std::string resolved(const std::string& line) {
  static const std::regex indirect(
      R"re(("(?:DeviceDesc|FriendlyName|LocationInformation)"=")(@.*)("\r?))re");
  std::smatch match;
  if (!std::regex_match(line, match, indirect)) return line;
  const auto text = winapi::resolveIndirectText(match[2]);
  return text ? match[1].str() + *text + match[3].str() : "";
}

// Wine's name for the export's version of the system; "" when the export has none.
std::string windowsVersion(const std::string& text) {
  static const std::regex ten("\"CurrentMajorVersionNumber\"=dword:0000000a", std::regex::icase);
  static const std::regex older("\"CurrentVersion\"=\"(6\\.[123])\"", std::regex::icase);
  static const std::map<std::string, std::string> names{
      {"6.1", "win7"}, {"6.2", "win8"}, {"6.3", "win81"}};
  std::smatch match;
  if (std::regex_search(text, ten)) return "win10";
  return std::regex_search(text, match, older) ? names.at(match[1]) : "";
}

void importKeys(const std::string& text) {
  const TempDir folder;
  const auto file = folder / "import.reg";
  const std::wstring wide = widen(text);
  writeFile(file, utf16File({reinterpret_cast<const char16_t*>(wide.data()), wide.size()}));
  const ProgramResult result = runProgram(
      {.program = R"(C:\windows\system32\reg.exe)", .arguments = {"import", file.string()}});
  if (result.exitCode != 0) throw std::runtime_error("reg import: " + result.errors);
}

}  // namespace

Computer::Computer(const std::filesystem::path& registryExport) {
  const std::string text = readExport(registryExport);
  if (!text.starts_with("Windows Registry Editor Version 5.00")) {
    throw std::runtime_error(registryExport.string() + " is no registry export, version 5.00");
  }
  std::string kept = "Windows Registry Editor Version 5.00\n\n";
  std::istringstream lines(text);
  bool keep = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('[')) {
      const std::string key = deviceOrDriverKey(line);
      keep = !key.empty();
      if (keep) importedKeys.push_back(key);
    }
    if (keep) kept += resolved(line) + '\n';
  }
  importKeys(kept);
  if (const std::string version = windowsVersion(text); !version.empty()) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kProgramSettings, "Version", REG_SZ, version.c_str(),
                    static_cast<DWORD>(version.size() + 1));
  }
}

Computer::~Computer() {
  for (const std::string& key : importedKeys) {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, key.c_str());
  }
  RegDeleteTreeA(HKEY_CURRENT_USER, kProgramSettings);
}

std::string Computer::withoutOwnDevice(std::string document) {
  const std::size_t start = document.find(R"(<Device vendorID="0000"  deviceID="0000")");
  if (start == std::string::npos) return document;
  constexpr std::string_view kEnd = "</Device>";
  return document.erase(start, document.find(kEnd, start) + kEnd.size() - start);
}

}  // namespace tolvanix::test
