#include "winapi/posix/InfStrings.h"

#include <algorithm>

#include "winapi/posix/IgnoreCase.h"

namespace tolvanix {

namespace {

constexpr std::size_t kFirstBuckets = 256;  // a power of two, as every later count

}  // namespace

void InfStrings::clear() {
  unread.clear();
  firstUnread = 0;
  entries.clear();
  buckets.clear();
}

std::optional<std::string_view> InfStrings::find(std::string_view name) {
  const std::uint32_t nameHash = hashIgnoringCase(name);
  const Entry* found = findEntry(name, nameHash);
  while (found == nullptr) {
    const std::size_t known = entries.size();
    if (!readEntry()) return std::nullopt;
    if (entries.size() > known && entries.back().nameHash == nameHash) {
      found = findEntry(name, nameHash);
    }
  }
  return line.field(1);
}

bool InfStrings::readEntry() {
  while (firstUnread < unread.size()) {
    Range& rest = unread[firstUnread];
    const char* const begin = skipToInfContent(rest.begin, rest.end);
    if (begin == rest.end) {
      ++firstUnread;
      continue;
    }
    const char* const end = endOfWholeInfLine(begin, rest.end);
    rest.begin = end;
    const std::string_view whole(begin, static_cast<std::size_t>(end - begin));
    const std::string_view beforeValue = whole.substr(0, whole.find('='));
    if (beforeValue.size() == whole.size()) continue;
    if (beforeValue.find_first_of("\";,\\") == std::string_view::npos) {
      std::size_t length = beforeValue.size();
      while (length > 0 && isInfBlank(beforeValue[length - 1])) --length;
      addEntry(beforeValue.substr(0, length), {begin, end});
      return true;
    }
    newLine.split(begin, end);
    if (const auto name = newLine.field(0)) {
      addEntry(*name, {begin, end});
      return true;
    }
  }
  return false;
}

void InfStrings::addEntry(std::string_view name, Range whole) {
  const std::uint32_t nameHash = hashIgnoringCase(name);
  if (findEntry(name, nameHash) != nullptr) return;
  entries.push_back({nameHash, 0, whole});
  if (entries.size() > buckets.size()) {
    buckets.assign(std::max(kFirstBuckets, buckets.size() * 2), 0);
    for (std::uint32_t i = 0; i + 1 < entries.size(); ++i) linkEntry(i);
  }
  linkEntry(static_cast<std::uint32_t>(entries.size() - 1));
}

const InfStrings::Entry* InfStrings::findEntry(std::string_view name, std::uint32_t nameHash) {
  if (buckets.empty()) return nullptr;
  for (std::uint32_t i = buckets[nameHash & (buckets.size() - 1)]; i != 0;) {
    const Entry& entry = entries[i - 1];
    i = entry.next;
    if (entry.nameHash != nameHash) continue;
    line.split(entry.line.begin, entry.line.end);
    if (equalIgnoringCase(*line.field(0), name)) return &entry;
  }
  return nullptr;
}

void InfStrings::linkEntry(std::uint32_t index) {
  std::uint32_t& bucket = buckets[entries[index].nameHash & (buckets.size() - 1)];
  entries[index].next = bucket;
  bucket = index + 1;
}

}  // namespace tolvanix
