#include "winapi/posix/inf/InfStrings.h"

#include <algorithm>
#include <bit>

#include "winapi/posix/inf/NameHash.h"

namespace tolvanix::winapi {

void InfStrings::clear() {
  sections.clear();
  entries.clear();
  buckets.clear();
  line.clear();
}

std::optional<std::string_view> InfStrings::find(std::string_view name) {
  if (buckets.empty()) buildIndex();
  const std::uint32_t nameHash = hashIgnoringCase(name);
  for (std::uint32_t i = buckets[nameHash & (buckets.size() - 1)]; i != 0;
       i = entries[i - 1].next) {
    const Entry& entry = entries[i - 1];
    if (entry.nameHash != nameHash) continue;
    line.split(entry.begin, entry.end);
    if (equalIgnoringCase(*line.field(0), name)) return line.field(1);
  }
  return std::nullopt;
}

void InfStrings::buildIndex() {
  for (const auto& [sectionBegin, sectionEnd] : sections) {
    const char* p = skipToInfContent(sectionBegin, sectionEnd);
    while (p < sectionEnd) {
      const char* const end = line.split(p, sectionEnd);
      if (const auto name = line.field(0)) entries.push_back({hashIgnoringCase(*name), 0, p, end});
      p = skipToInfContent(end, sectionEnd);
    }
  }
  buckets.assign(std::bit_ceil(entries.size() + 1), 0);
  // Backwards, so that the first definition of a name comes first in its bucket.
  for (auto i = static_cast<std::uint32_t>(entries.size()); i > 0; --i) {
    std::uint32_t& bucket = buckets[entries[i - 1].nameHash & (buckets.size() - 1)];
    entries[i - 1].next = bucket;
    bucket = i;
  }
}

}  // namespace tolvanix::winapi
