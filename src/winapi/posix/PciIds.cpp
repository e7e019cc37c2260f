#include "winapi/posix/PciIds.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "winapi/posix/Hex.h"

namespace tolvanix::winapi {
namespace {

constexpr const char* kLists[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};

std::string_view lineAt(std::string_view text, std::size_t start) {
  return text.substr(start, text.find('\n', start) - start);
}

// Four digits at `at`; none when other characters stand there.
std::optional<std::uint32_t> idAt(std::string_view line, std::size_t at) {
  return line.size() >= at + 4 ? readHex(line.substr(at, 4)) : std::nullopt;
}

// What follows the IDs and the blanks behind them.
std::string_view nameIn(std::string_view line, std::size_t idsEnd) {
  const std::size_t start = line.find_first_not_of(' ', idsEnd);
  return start == std::string_view::npos ? std::string_view() : line.substr(start);
}

}  // namespace

PciIds::PciIds(MappedFile mapped) : file(std::move(mapped)) {
  const std::string_view list = file.text();
  devices.reserve(list.size() / 64);  // about one line in two is a device's
  std::optional<std::uint32_t> vendor;
  for (std::size_t start = 0; start < list.size();) {
    const std::string_view line = lineAt(list, start);
    const bool indented = line.starts_with('\t');
    if (indented && vendor && line.size() > 1 && line[1] != '\t') {
      const std::optional<std::uint32_t> device = idAt(line, 1);
      if (device) devices.push_back({*vendor << 16 | *device, static_cast<std::uint32_t>(start)});
    } else if (!indented && !line.empty() && line[0] != '#') {
      // Classes and other lists ("C 01  ...") follow the vendors; their entries are no devices.
      vendor = line.size() > 4 && line[4] == ' ' ? idAt(line, 0) : std::nullopt;
    }
    start += line.size() + 1;
  }
  const auto byIds = [](const Entry& left, const Entry& right) { return left.ids < right.ids; };
  if (!std::is_sorted(devices.begin(), devices.end(), byIds)) {
    std::stable_sort(devices.begin(), devices.end(), byIds);
  }
}

PciIds PciIds::ofSystem() {
  for (const char* const list : kLists) {
    MappedFile mapped(list);
    if (!mapped.text().empty()) return PciIds(std::move(mapped));
  }
  return PciIds(MappedFile(""));
}

std::string_view PciIds::name(std::uint16_t vendor, std::uint16_t device, std::uint16_t subVendor,
                              std::uint16_t subDevice) const {
  const std::uint32_t ids = static_cast<std::uint32_t>(vendor) << 16 | device;
  const auto found =
      std::lower_bound(devices.begin(), devices.end(), ids,
                       [](const Entry& entry, std::uint32_t wanted) { return entry.ids < wanted; });
  if (found == devices.end() || found->ids != ids) return {};
  const std::string_view list = file.text();
  const std::string_view deviceLine = lineAt(list, found->offset);
  for (std::size_t next = found->offset + deviceLine.size() + 1; next < list.size();) {
    const std::string_view line = lineAt(list, next);
    if (!line.starts_with("\t\t") && !line.starts_with('#')) break;
    if (idAt(line, 2) == subVendor && idAt(line, 7) == subDevice) return nameIn(line, 11);
    next += line.size() + 1;
  }
  return nameIn(deviceLine, 5);
}

}  // namespace tolvanix::winapi
