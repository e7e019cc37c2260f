#include "winapi/posix/base/ProfileText.h"

#include <algorithm>
#include <utility>

#include "text/Ascii.h"

namespace tolvanix::winapi {

namespace {

std::string_view trim(std::string_view text) {
  constexpr char kBlanks[] = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes the next line off the text, without blanks around it; nothing at the end.
std::optional<std::string_view> nextLine(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trim(line);
}

// The name of the section that the line begins, empty for every other line. What follows the last
// bracket is ignored.
std::string_view sectionName(std::string_view line) {
  const std::size_t end = line.rfind(']');
  if (!line.starts_with('[') || end == std::string_view::npos) return {};
  return trim(line.substr(1, end - 1));
}

std::string_view withoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

ProfileText::ProfileText(std::string fileText) : text(std::move(fileText)) {
  std::string_view rest = text;
  while (const auto line = nextLine(rest)) {
    const std::string_view name = sectionName(*line);
    if (name.empty()) continue;
    firstOfName.try_emplace(toLower(name), sections.size());
    sections.push_back({name, rest});
  }
}

std::string ProfileText::sectionNames() const {
  std::string names;
  for (const Section& section : sections) names.append(section.name).push_back('\0');
  return names;
}

std::optional<std::string_view> ProfileText::value(std::string_view section,
                                                   std::string_view key) const {
  const auto found = firstOfName.find(toLower(section));
  if (found == firstOfName.end()) return std::nullopt;
  std::string_view rest = sections[found->second].rest;
  while (const auto line = nextLine(rest)) {
    if (!sectionName(*line).empty()) break;
    const std::size_t equals = line->find('=');
    if (line->starts_with(';') || equals == std::string_view::npos) continue;
    if (equalIgnoringCase(trim(line->substr(0, equals)), key)) {
      return withoutQuotes(trim(line->substr(equals + 1)));
    }
  }
  return std::nullopt;
}

}  // namespace tolvanix::winapi
