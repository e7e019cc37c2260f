// An INF file: finds its sections at once, and reads a line when a field of it is asked for.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "winapi/posix/inf/InfDividers.h"
#include "winapi/posix/inf/InfLine.h"
#include "winapi/posix/inf/InfStrings.h"
#include "winapi/winapi.h"

namespace tolvanix::winapi {

// A place in the file; a section here is one of perhaps several of the same name.
struct InfPosition {
  UINT section;
  UINT line;

  // Not as one number of eight bytes: positions have just been written in two pieces.
  bool operator==(const InfPosition& other) const {
    return line == other.line && section == other.section;
  }
};

class InfFile {
 public:
  // Reads the file and checks that it is an INF file of the present style. The system's error
  // code; `errorLine` is the number of the line at fault, 0 for none. Memory is used again.
  DWORD open(const char* fileName, UINT& errorLine);

  // Reads the beginning of the file, and takes the sections that are whole in it. False when they
  // cannot be found in it; the rest of the file is not checked.
  bool openBeginning(const char* fileName);

  // Sections of one name are one section, in the order of the file.
  std::optional<InfPosition> firstLine(std::string_view section) const;
  std::optional<InfPosition> nextLine(const InfPosition& position) {
    if (lineAt(position) == nullptr) return std::nullopt;
    const char* const next = lineEnd + 1;
    if (next < sectionEnd && !isInfBlank(*next) && *next != ';') {
      return InfPosition{position.section, static_cast<UINT>(next - text.data())};
    }
    return contentFrom(position.section, lineEnd);
  }

  // The line at a position that one of the two gave out; null for any other. Good until the next
  // call for another line.
  const InfLine* lineAt(const InfPosition& position) {
    return position == linePosition ? &line : splitLineAt(position);
  }

  // The first value of the first line with that key in the section, %names% left. Good until the
  // next call for another line.
  std::optional<std::string_view> firstValue(std::string_view section, std::string_view key);

  // The field's text with %names% replaced. Good until the next call.
  std::string_view expand(std::string_view field);

  // Bytes that the object holds on to.
  std::size_t capacity() const { return text.capacity(); }

 private:
  // Line feeds after the text, so that every line has one and may be read in blocks.
  static constexpr std::size_t kPadding = 1 + InfDividers::kBlock;

  struct Section {
    std::uint32_t nameHash;
    std::uint32_t nameLength;
    const char* name;
    const char* begin;  // of its lines
    const char* end;

    std::string_view getName() const { return {name, nameLength}; }
  };

  static constexpr InfPosition kNowhere{std::numeric_limits<UINT>::max(), 0};

  const InfLine* splitLineAt(const InfPosition& position);
  DWORD read(const char* fileName, std::size_t limit);
  DWORD findSections(const char*& place);
  void sortSections();
  const char* findHeader(const char* body) const;
  bool hasSignature();
  std::optional<UINT> findSection(std::string_view name) const;
  std::optional<UINT> nextOfName(UINT section) const;
  std::optional<UINT> sameNameFrom(UINT index, std::uint32_t nameHash, std::string_view name) const;
  std::optional<InfPosition> contentFrom(UINT section, const char* place) const;
  void prepareStrings();
  std::string_view replaceStrings(std::string_view field);
  const char* textEnd() const { return text.data() + text.size() - kPadding; }

  std::string text;
  std::vector<Section> sections;  // by hash of the name, then in the order of the file
  InfLine line;
  InfPosition linePosition = kNowhere;  // of the line that `line` holds
  const char* lineEnd = nullptr;
  const char* sectionEnd = nullptr;
  InfStrings strings;
  bool stringsPrepared = false;
  std::string replaced;
};

}  // namespace tolvanix::winapi
