// Version numbers such as "9.17.10.2849".
#pragma once

#include <string_view>

namespace tolvanix::sample {

// Negative, 0 or positive as the left version is older than, the same as or newer than the right
// one. Fields compare as numbers of any length, one after the other; a field that is missing
// counts as 0, and of a field's text only the leading digits count.
int compareVersions(std::u16string_view left, std::u16string_view right);

}  // namespace tolvanix::sample
