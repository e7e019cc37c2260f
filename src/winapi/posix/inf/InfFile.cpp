#include "winapi/posix/inf/InfFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>

#include "winapi/posix/base/TextFile.h"
#include "winapi/posix/inf/NameHash.h"

namespace tolvanix::winapi {

namespace {

// Published limits (MAX_SECT_NAME_LEN, MAX_INF_STRING_LENGTH and that of a replaced string),
// without the terminating zero.
constexpr std::size_t kLongestSectionName = 255;
constexpr std::size_t kLongestField = 4095;
constexpr std::size_t kLongestString = 511;

constexpr char kCtrlZ = '\x1A';

// Old editors close a text by Ctrl-Z, which is no line of it.
void cutTrailingCtrlZ(std::string& text) {
  constexpr char kFillers[] = {' ', '\t', '\r', '\n', '\0', kCtrlZ};
  const std::size_t last = text.find_last_not_of(std::string_view(kFillers, sizeof kFillers));
  const std::size_t mark = text.find(kCtrlZ, last == std::string::npos ? 0 : last + 1);
  if (mark != std::string::npos) text.resize(mark);
}

}  // namespace

DWORD InfFile::open(const char* fileName, UINT& errorLine) {
  errorLine = 0;
  const DWORD readError = read(fileName, std::numeric_limits<std::size_t>::max());
  if (readError != ERROR_SUCCESS) return readError;
  const char* place = text.data();
  const DWORD error = findSections(place);
  if (error != ERROR_SUCCESS) {
    errorLine = static_cast<UINT>(std::count<const char*>(text.data(), place, '\n')) + 1;
    return error;
  }
  sortSections();
  return hasSignature() ? ERROR_SUCCESS : ERROR_WRONG_INF_STYLE;
}

bool InfFile::openBeginning(const char* fileName) {
  constexpr std::size_t kBeginning = 4096;
  if (read(fileName, kBeginning) != ERROR_SUCCESS) return false;
  const char* place = text.data();
  if (findSections(place) != ERROR_SUCCESS) return false;
  if (!sections.empty()) sections.pop_back();  // its end is not known
  sortSections();
  return true;
}

DWORD InfFile::read(const char* fileName, std::size_t limit) {
  sections.clear();
  strings.clear();
  stringsPrepared = false;
  line.clear();
  linePosition = kNowhere;
  const DWORD error = readTextFile(fileName, text, BigEndian::kRefused, limit);
  // Windows takes a file in big-endian UTF-16 for narrow text, which has no section then.
  if (error == ERROR_INVALID_DATA) return ERROR_EXPECTED_SECTION_NAME;
  if (error != ERROR_SUCCESS) return error;
  if (text.empty()) return ERROR_FILE_INVALID;
  // Positions in the text have to fit an INFCONTEXT.
  if (text.size() > std::numeric_limits<UINT>::max()) return ERROR_NOT_ENOUGH_MEMORY;
  cutTrailingCtrlZ(text);
  text.append(kPadding, '\n');
  return ERROR_SUCCESS;
}

// On an error `place` is in the line at fault.
DWORD InfFile::findSections(const char*& place) {
  place = skipToInfContent(text.data(), textEnd());
  if (place < textEnd() && *place != '[') {
    // Drivers exist whose file begins with a title; it is in no section, and no line of it goes on.
    const char* first = place;
    while (first < textEnd() && *first != '[') {
      first = skipToInfContent(endOfInfLine(first, textEnd()), textEnd());
    }
    if (first == textEnd()) return ERROR_EXPECTED_SECTION_NAME;
    place = first;
  }
  while (place < textEnd()) {
    const char* const headerEnd = endOfInfLine(place, textEnd());
    const char* const name = place + 1;
    const auto* const nameEnd = static_cast<const char*>(
        std::memchr(name, ']', static_cast<std::size_t>(headerEnd - name)));
    if (nameEnd == nullptr) return ERROR_BAD_SECTION_NAME_LINE;
    const auto length = static_cast<std::size_t>(nameEnd - name);
    if (length > kLongestSectionName) return ERROR_SECTION_NAME_TOO_LONG;
    const char* const next = findHeader(headerEnd);
    sections.push_back({hashIgnoringCase({name, length}), static_cast<std::uint32_t>(length), name,
                        headerEnd, next});
    place = next;
  }
  return ERROR_SUCCESS;
}

void InfFile::sortSections() {
  std::sort(sections.begin(), sections.end(), [](const Section& left, const Section& right) {
    return left.nameHash != right.nameHash ? left.nameHash < right.nameHash
                                           : left.begin < right.begin;
  });
}

// The bracket of the next section header in the text from the end of one header on, or the end of
// the text. A bracket counts at the beginning of a line that does not continue the one before it.
const char* InfFile::findHeader(const char* body) const {
  const char* p = body;
  while ((p = static_cast<const char*>(
              std::memchr(p, '[', static_cast<std::size_t>(textEnd() - p)))) != nullptr) {
    const char* lineStart = p;
    while (lineStart > body && isInfBlank(lineStart[-1]) && lineStart[-1] != '\n') --lineStart;
    if (lineStart > body && lineStart[-1] == '\n') {
      const char* const previousEnd = lineStart - 1;
      if (previousEnd == body) return p;
      const auto* const feed = static_cast<const char*>(
          memrchr(body, '\n', static_cast<std::size_t>(previousEnd - body)));
      if (!infLineContinues(feed + 1, previousEnd)) return p;
    }
    ++p;
  }
  return textEnd();
}

bool InfFile::hasSignature() {
  constexpr std::array<std::string_view, 3> kSignatures = {"$Windows NT$", "$Chicago$",
                                                           "$Windows 95$"};
  const std::string_view signature = firstValue("Version", "Signature").value_or("");
  return std::any_of(kSignatures.begin(), kSignatures.end(),
                     [&](std::string_view known) { return equalIgnoringCase(signature, known); });
}

std::optional<std::string_view> InfFile::firstValue(std::string_view section,
                                                    std::string_view key) {
  for (auto position = firstLine(section); position; position = nextLine(*position)) {
    const InfLine* const found = lineAt(*position);
    if (equalIgnoringCase(found->field(0).value_or(""), key)) return found->field(1);
  }
  return std::nullopt;
}

std::optional<UINT> InfFile::findSection(std::string_view name) const {
  const std::uint32_t nameHash = hashIgnoringCase(name);
  const auto found = std::lower_bound(
      sections.begin(), sections.end(), nameHash,
      [](const Section& section, std::uint32_t hash) { return section.nameHash < hash; });
  return sameNameFrom(static_cast<UINT>(found - sections.begin()), nameHash, name);
}

// The first section of that name from an index on, where sections with its hash are.
std::optional<UINT> InfFile::sameNameFrom(UINT index, std::uint32_t nameHash,
                                          std::string_view name) const {
  for (; index < sections.size() && sections[index].nameHash == nameHash; ++index) {
    if (equalIgnoringCase(sections[index].getName(), name)) return index;
  }
  return std::nullopt;
}

std::optional<UINT> InfFile::nextOfName(UINT section) const {
  return sameNameFrom(section + 1, sections[section].nameHash, sections[section].getName());
}

std::optional<InfPosition> InfFile::firstLine(std::string_view section) const {
  const auto found = findSection(section);
  if (!found) return std::nullopt;
  return contentFrom(*found, sections[*found].begin);
}

// The first line with content from `place` on in the section or the later ones of its name.
std::optional<InfPosition> InfFile::contentFrom(UINT section, const char* place) const {
  const char* content = skipToInfContent(place, sections[section].end);
  while (content == sections[section].end) {
    const auto next = nextOfName(section);
    if (!next) return std::nullopt;
    section = *next;
    content = skipToInfContent(sections[section].begin, sections[section].end);
  }
  return InfPosition{section, static_cast<UINT>(content - text.data())};
}

const InfLine* InfFile::splitLineAt(const InfPosition& position) {
  if (position.section >= sections.size()) return nullptr;
  const Section& section = sections[position.section];
  const char* const begin = text.data() + position.line;
  if (begin < section.begin || begin >= section.end) return nullptr;
  lineEnd = line.split(begin, section.end);
  sectionEnd = section.end;
  linePosition = position;
  return &line;
}

void InfFile::prepareStrings() {
  stringsPrepared = true;
  char languageSection[] = "Strings.0000";
  std::snprintf(languageSection, sizeof languageSection, "Strings.%04x", GetSystemDefaultLangID());
  for (const std::string_view name :
       {std::string_view(languageSection), std::string_view("Strings")}) {
    for (auto section = findSection(name); section; section = nextOfName(*section)) {
      strings.addSection(sections[*section].begin, sections[*section].end);
    }
  }
}

std::string_view InfFile::expand(std::string_view field) {
  const bool plain = field.find('%') == std::string_view::npos;
  return (plain ? field : replaceStrings(field)).substr(0, kLongestField);
}

std::string_view InfFile::replaceStrings(std::string_view field) {
  if (!stringsPrepared) prepareStrings();
  replaced.clear();
  while (!field.empty() && replaced.size() < kLongestField) {
    const std::size_t begin = std::min(field.find('%'), field.size());
    replaced.append(field.substr(0, begin));
    field.remove_prefix(begin);
    const std::size_t end = field.find('%', 1);
    if (end == std::string_view::npos) {
      replaced.append(field);
      break;
    }
    const std::string_view name = field.substr(1, end - 1);
    const auto value = name.empty() ? std::string_view("%") : strings.find(name);
    replaced.append(value ? value->substr(0, kLongestString) : field.substr(0, end + 1));
    field.remove_prefix(end + 1);
  }
  return replaced;
}

}  // namespace tolvanix::winapi
