// INF files: opened, and every model read, as the search for a hardware ID does.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include "winapi/winapi.h"

namespace {

std::string field(INFCONTEXT& line, DWORD index) {
  char text[300] = "";
  SetupGetStringFieldA(&line, index, text, sizeof text, nullptr);
  return text;
}

// Calls `visit` for each line of the section.
template <typename Visit>
void forEachLine(HINF inf, const std::string& section, Visit visit) {
  INFCONTEXT line;
  for (BOOL found = SetupFindFirstLineA(inf, section.c_str(), nullptr, &line); found;
       found = SetupFindNextLine(&line, &line)) {
    visit(line);
  }
}

void readModels(HINF inf, INFCONTEXT& manufacturer) {
  const std::string models = field(manufacturer, 1);
  for (DWORD index = 2; index <= SetupGetFieldCount(&manufacturer) + 1; ++index) {
    forEachLine(inf, models + '.' + field(manufacturer, index), [](INFCONTEXT& model) {
      for (DWORD i = 0; i <= SetupGetFieldCount(&model); ++i) field(model, i);
    });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const char* const kFile = "./fuzz_inf.input";
  std::ofstream(kFile, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  UINT errorLine = 0;
  HINF inf = SetupOpenInfFileA(kFile, nullptr, INF_STYLE_WIN4, &errorLine);
  if (inf == INVALID_HANDLE_VALUE) return 0;
  forEachLine(inf, "Manufacturer", [inf](INFCONTEXT& line) { readModels(inf, line); });
  SetupCloseInfFile(inf);
  return 0;
}
