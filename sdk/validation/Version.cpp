#include "Version.h"

#include <algorithm>
#include <cstddef>

namespace tolvanix::sample {

namespace {

// The digits of the next field, without leading zeros.
std::u16string_view takeField(std::u16string_view& version) {
  const std::size_t end = std::min(version.find(u'.'), version.size());
  std::u16string_view field = version.substr(0, end);
  version.remove_prefix(std::min(end + 1, version.size()));
  field = field.substr(0, field.find_first_not_of(u"0123456789"));
  field.remove_prefix(std::min(field.find_first_not_of(u'0'), field.size()));
  return field;
}

}  // namespace

int compareVersions(std::u16string_view left, std::u16string_view right) {
  while (!left.empty() || !right.empty()) {
    const std::u16string_view leftField = takeField(left);
    const std::u16string_view rightField = takeField(right);
    if (leftField.size() != rightField.size()) {
      return leftField.size() < rightField.size() ? -1 : 1;
    }
    if (const int order = leftField.compare(rightField); order != 0) return order;
  }
  return 0;
}

}  // namespace tolvanix::sample
