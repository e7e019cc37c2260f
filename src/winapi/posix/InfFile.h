// An INF file: finds its sections at once, and reads a line when a field of it is asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "winapi/posix/InfLine.h"
#include "winapi/posix/InfStrings.h"
#include "winapi/winapi.h"

namespace tolvanix {

// A place in the file; a section here is one of perhaps several of the same name.
struct InfPosition {
  UINT section;
  UINT line;
};

class InfFile {
 public:
  // Reads the file and checks that it is an INF file of the present style. The system's error
  // code; `errorLine` is the number of the line at fault, 0 for none. Memory is used again.
  DWORD open(const char* fileName, UINT& errorLine);

  // Sections of one name are one section, in the order of the file.
  std::optional<InfPosition> firstLine(std::string_view section) const;
  std::optional<InfPosition> nextLine(InfPosition position);

  // The line at a position that one of the two gave out; null for any other. Good until the next
  // call for another line.
  const InfLine* lineAt(InfPosition position);

  // The field's text with %names% replaced. Good until the next call.
  std::string_view expand(std::string_view field);

  // Bytes that the object holds on to.
  std::size_t capacity() const { return text.capacity(); }

 private:
  struct Section {
    std::uint32_t nameHash;
    std::uint32_t nameLength;
    const char* name;
    const char* begin;  // of its lines
    const char* end;

    std::string_view getName() const { return {name, nameLength}; }
  };

  DWORD findSections(const char*& place);
  const char* findHeader(const char* body) const;
  bool hasSignature();
  std::optional<UINT> findSection(std::string_view name) const;
  std::optional<UINT> nextOfName(UINT section) const;
  std::optional<UINT> sameNameFrom(UINT index, std::uint32_t nameHash, std::string_view name) const;
  std::optional<InfPosition> contentFrom(UINT section, const char* place) const;
  void prepareStrings();
  const char* textEnd() const { return text.data() + text.size(); }

  std::string text;
  std::vector<Section> sections;  // by hash of the name, then in the order of the file
  InfLine line;
  const char* lineBegin = nullptr;  // of the line that `line` holds
  const char* lineEnd = nullptr;
  InfStrings strings;
  bool stringsPrepared = false;
  std::string expanded;
};

}  // namespace tolvanix
