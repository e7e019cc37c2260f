#include "check/InfText.h"

#include <algorithm>

#include "install/DevHelper.h"
#include "text/Ascii.h"

namespace tolvanix::kit {

namespace {

// Calls `visit` with each line of the section.
template <typename Visit>
void forEachLine(HINF inf, const std::string& section, Visit visit) {
  INFCONTEXT line{};
  for (BOOL more = SetupFindFirstLineA(inf, section.c_str(), nullptr, &line); more != FALSE;
       more = SetupFindNextLine(&line, &line)) {
    visit(line);
  }
}

// The line's fields from that index on.
std::vector<std::string> fieldsFrom(INFCONTEXT& line, unsigned index) {
  std::vector<std::string> fields;
  const unsigned count = SetupGetFieldCount(&line);
  for (std::string field; index <= count && GetField(line, index, field) == ERROR_SUCCESS;
       ++index) {
    fields.push_back(field);
  }
  return fields;
}

}  // namespace

InfEncoding infEncoding(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return InfEncoding::kUtf16;
  if (bytes.starts_with("\xFE\xFF")) return InfEncoding::kUtf16BigEndian;
  if (bytes.starts_with("\xEF\xBB\xBF")) return InfEncoding::kUtf8;
  if (bytes.find('\0') != std::string_view::npos) return InfEncoding::kUtf16Unmarked;
  const bool plain = std::all_of(bytes.begin(), bytes.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return plain ? InfEncoding::kAscii : InfEncoding::kNarrow;
}

const char* nameOf(InfEncoding encoding) {
  switch (encoding) {
    case InfEncoding::kAscii:
      return "ASCII";
    case InfEncoding::kNarrow:
      return "8 bits";
    case InfEncoding::kUtf8:
      return "UTF-8";
    case InfEncoding::kUtf16:
      return "UTF-16";
    case InfEncoding::kUtf16BigEndian:
      return "UTF-16 big-endian";
    default:
      return "UTF-16 without a byte-order mark";
  }
}

std::string versionValue(HINF inf, std::string_view key, unsigned field) {
  std::string value;
  bool found = false;
  forEachLine(inf, "Version", [&](INFCONTEXT& line) {
    std::string name;
    if (found || GetField(line, 0, name) != ERROR_SUCCESS || !equalIgnoringCase(name, key)) return;
    found = true;
    GetField(line, field, value);
  });
  return value;
}

std::vector<std::string> listedIds(HINF inf) {
  std::vector<std::string> ids;
  forEachLine(inf, "Manufacturer", [&](INFCONTEXT& manufacturer) {
    const std::vector<std::string> names = fieldsFrom(manufacturer, 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string section = i == 0 ? names[0] : names[0] + '.' + names[i];
      forEachLine(inf, section, [&](INFCONTEXT& model) {
        for (std::string& id : fieldsFrom(model, 2)) {
          id.erase(std::min(id.find("&REV"), id.size()));
          ids.push_back(std::move(id));
        }
      });
    }
  });
  return ids;
}

}  // namespace tolvanix::kit
