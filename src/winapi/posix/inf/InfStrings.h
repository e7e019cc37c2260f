// The strings that an INF file defines, by name without regard to case.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "winapi/posix/inf/InfLine.h"

namespace tolvanix::winapi {

class InfStrings {
 public:
  void clear();

  // Adds the lines of a section after what was added before; of several definitions of a name the
  // first holds.
  void addSection(const char* begin, const char* end) { sections.push_back({begin, end}); }

  // The value as the file has it, quotes taken away; good until the next call.
  std::optional<std::string_view> find(std::string_view name);

 private:
  struct Section {
    const char* begin;
    const char* end;
  };
  struct Entry {
    std::uint32_t nameHash;
    std::uint32_t next;  // of the same bucket: index + 1, 0 for none
    const char* begin;   // of the line
    const char* end;
  };

  void buildIndex();

  std::vector<Section> sections;
  // The index is built at the first need: most files are searched without their strings.
  std::vector<Entry> entries;
  std::vector<std::uint32_t> buckets;  // index of the first entry + 1, 0 for none
  InfLine line;
};

}  // namespace tolvanix::winapi
