#include "winapi/posix/machine/PciIds.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>

#include "winapi/posix/base/Hex.h"

namespace tolvanix::winapi {
namespace {

constexpr const char* kLists[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};

// Behind all vendors: classes and other lists ("C 01  ...").
constexpr std::uint32_t kNoVendor = 0x10000;

// Four digits at `at`; none when other characters stand there.
std::optional<std::uint32_t> idAt(std::string_view text, std::size_t at) {
  return text.size() >= at + 4 ? readHex(text.substr(at, 4)) : std::nullopt;
}

// What follows the IDs and the blanks behind them.
std::string_view nameIn(std::string_view line, std::size_t idsEnd) {
  const std::size_t start = line.find_first_not_of(' ', idsEnd);
  return start == std::string_view::npos ? std::string_view() : line.substr(start);
}

std::size_t lineEnd(std::string_view text, std::size_t from) {
  return std::min(text.find('\n', from), text.size());
}

std::string_view lineAt(std::string_view text, std::size_t start) {
  return text.substr(start, lineEnd(text, start) - start);
}

// A line of the level that is searched, a vendor's or a device's.
struct Line {
  std::size_t start;
  std::uint32_t id;
};

// Sixteen characters at once: a vector type of the compilers (gcc and clang).
using Characters [[gnu::vector_size(16)]] = char;

Characters load(const char* from) {
  Characters characters;
  std::memcpy(&characters, from, sizeof characters);
  return characters;
}

bool any(Characters places) {
  const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(places);
  return (halves[0] | halves[1]) != 0;
}

// Where the first line begins, from `from` on and before `to`, that is not indented; else `to`.
std::size_t nextUnindented(std::string_view list, std::size_t from, std::size_t to) {
  if (from == 0) return 0;
  // Nearly all lines are indented: many places are ruled out at once.
  constexpr std::size_t kStride = 8 * sizeof(Characters);
  for (; from + kStride <= to; from += kStride) {
    Characters begins = {};
    for (std::size_t at = from; at < from + kStride; at += sizeof(Characters)) {
      begins |= (load(&list[at - 1]) == '\n') & (load(&list[at]) != '\t');
    }
    if (any(begins)) break;
  }
  while (from < to && (list[from - 1] != '\n' || list[from] == '\t')) ++from;
  return from;
}

// The first vendor's line from `from` on and before `to`.
std::optional<Line> nextVendor(std::string_view list, std::size_t from, std::size_t to) {
  for (;;) {
    from = nextUnindented(list, from, to);
    if (from >= to) return std::nullopt;
    if (list[from] != '#' && list[from] != '\n') {
      return Line{from, idAt(list, from).value_or(kNoVendor)};
    }
    ++from;
  }
}

// The first device's line from `from` on and before `to`.
std::optional<Line> nextDevice(std::string_view list, std::size_t from, std::size_t to) {
  std::size_t start = from == 0 ? 0 : lineEnd(list, from - 1) + 1;
  for (; start < to; start = lineEnd(list, start) + 1) {
    const auto id = list[start] == '\t' ? idAt(list, start + 1) : std::nullopt;
    if (id) return Line{start, *id};
  }
  return std::nullopt;
}

// Where the line of that ID begins. Lines of a level are sorted: the range in question is halved.
template <typename NextLine>
std::optional<std::size_t> findLine(std::string_view list, std::uint32_t id, NextLine nextLine) {
  std::size_t low = 0;
  std::size_t high = list.size();
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    const std::optional<Line> line = nextLine(list, middle, high);
    if (line && line->id == id) return line->start;
    if (line && line->id < id) {
      low = line->start + 1;
    } else {
      high = middle;
    }
  }
  return std::nullopt;
}

}  // namespace

PciIds::PciIds(MappedFile mapped) : file(std::move(mapped)) {}

PciIds PciIds::ofSystem() {
  for (const char* const list : kLists) {
    MappedFile mapped(list);
    if (!mapped.text().empty()) return PciIds(std::move(mapped));
  }
  return PciIds(MappedFile(""));
}

std::string_view PciIds::section(std::uint16_t vendor) {
  const auto [entry, added] = sections.try_emplace(vendor);
  const std::string_view list = file.text();
  const auto start = added ? findLine(list, vendor, nextVendor) : std::nullopt;
  if (start) {
    const auto next = nextVendor(list, *start + 1, list.size());
    entry->second = list.substr(*start, (next ? next->start : list.size()) - *start);
  }
  return entry->second;
}

std::string_view PciIds::name(std::uint16_t vendor, std::uint16_t device, std::uint16_t subVendor,
                              std::uint16_t subDevice) {
  const std::string_view lines = section(vendor);
  const auto start = findLine(lines, device, nextDevice);
  if (!start) return {};
  const std::string_view deviceLine = lineAt(lines, *start);
  for (std::size_t at = *start + deviceLine.size() + 1; at < lines.size();) {
    const std::string_view line = lineAt(lines, at);
    if (!line.starts_with("\t\t") && !line.starts_with('#')) break;
    if (idAt(line, 2) == subVendor && idAt(line, 7) == subDevice) return nameIn(line, 11);
    at += line.size() + 1;
  }
  return nameIn(deviceLine, 5);
}

}  // namespace tolvanix::winapi
