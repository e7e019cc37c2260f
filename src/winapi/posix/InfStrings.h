// The strings that an INF file defines, by name without regard to case.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "winapi/posix/InfLine.h"

namespace tolvanix {

class InfStrings {
 public:
  void clear();

  // Adds the lines of a section behind what was added before; of several definitions of a name the
  // first holds. The lines are read when a name is looked for, and no further than to that name.
  void addSection(const char* begin, const char* end) { unread.push_back({begin, end}); }

  // The value as the file has it, quotes taken away; good until the next call.
  std::optional<std::string_view> find(std::string_view name);

 private:
  struct Range {
    const char* begin;
    const char* end;
  };
  struct Entry {
    std::uint32_t nameHash;
    std::uint32_t next;  // of the same bucket: index + 1, 0 for none
    Range line;
  };

  // Reads the next line that defines a name; false when there is none.
  bool readEntry();
  void addEntry(std::string_view name, Range line);
  // The entry of that name, null for none. `line` then holds its line.
  const Entry* findEntry(std::string_view name, std::uint32_t nameHash);
  void linkEntry(std::uint32_t index);

  std::vector<Range> unread;
  std::size_t firstUnread = 0;
  std::vector<Entry> entries;
  std::vector<std::uint32_t> buckets;  // index of the first entry + 1, 0 for none
  InfLine line;
  InfLine newLine;
};

}  // namespace tolvanix
