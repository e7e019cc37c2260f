// Hardware IDs against those of INF files, and names of devices in lists like pci.ids.
#include <span>

#include "fuzz.h"
#include "install/WantedId.h"
#include "winapi/posix/machine/PciIds.h"

namespace tolvanix::fuzz {

namespace naive {

bool matchesId(const std::string& wanted, const std::string& listed) {
  const std::string whole = lower(wanted);
  const std::string cut = lower(listed.substr(0, listed.find("&REV")));
  return cut.find(whole) != cut.npos || whole.find(cut) != whole.npos;
}

namespace {

// Digits in lower case; the letter before a class stays.
bool startsWith(const std::string& line, const std::string& start) {
  const std::string folded = line.starts_with("C ") ? "C " + lower(line.substr(2)) : lower(line);
  return folded.starts_with(start);
}

// What follows the start, and blanks, in the last line of the section that starts so; the section's
// own line is one of them.
std::string lastName(const std::vector<std::string>& lines, const std::string& section,
                     const std::string& start) {
  std::string name;
  bool inside = false;
  for (const std::string& line : lines) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] != '\t') inside = startsWith(line, section);
    if (!inside || !startsWith(line, start)) continue;
    const std::size_t at = line.find_first_not_of(' ', start.size());
    name = at == line.npos ? "" : line.substr(at);
  }
  return name;
}

std::string hex(std::uint32_t number, int digits) {
  char text[9] = "";
  std::snprintf(text, sizeof text, "%0*x", digits, number);
  return text;
}

std::string deviceName(const std::vector<std::string>& lines, const winapi::PciModel& model) {
  const std::string base = "C " + hex(model.classCode >> 16 & 0xFF, 2);
  std::string name = lastName(lines, hex(model.vendor, 4), '\t' + hex(model.device, 4));
  if (name.empty()) name = lastName(lines, base, '\t' + hex(model.classCode >> 8 & 0xFF, 2));
  return name.empty() ? lastName(lines, base, base) : name;
}

}  // namespace
}  // namespace naive

namespace {

void ids(std::string_view input) {
  const std::string wanted(takePart(input));
  const WantedId id(wanted);
  while (!input.empty()) {
    const std::string listed(takePart(input));
    expectEqual("match of an ID", id.matches(listed), naive::matchesId(wanted, listed));
  }
}

std::uint32_t takeNumber(std::string_view& rest, std::size_t bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < bytes && !rest.empty(); ++i) {
    number = number * 256 + static_cast<unsigned char>(rest[0]);
    rest.remove_prefix(1);
  }
  return number;
}

void names(std::string_view input) {
  std::vector<winapi::PciModel> models(2);
  for (winapi::PciModel& model : models) {
    model.vendor = static_cast<std::uint16_t>(takeNumber(input, 2));
    model.device = static_cast<std::uint16_t>(takeNumber(input, 2));
    model.classCode = takeNumber(input, 3);
  }
  std::vector<std::string> lines;
  for (std::string_view rest = input; !rest.empty();) lines.emplace_back(takePart(rest, '\n'));
  const auto found = winapi::pciNames(input, models);
  for (std::size_t i = 0; i < models.size(); ++i) {
    expectEqual("name of a device", found[i], naive::deviceName(lines, models[i]));
  }
}

}  // namespace

void match(std::string_view input) {
  const std::string_view rest = input.substr(input.empty() ? 0 : 1);
  if (input.starts_with('n')) {
    names(rest);
  } else {
    ids(rest);
  }
}

}  // namespace tolvanix::fuzz
