// The decision of the sample package's validation library.
#pragma once

#include <string>
#include <string_view>

namespace tolvanix::sample {

// The validation document for a package description (package.xml; README.md has its form) and the
// inventory of a computer: the devices whose drivers are older than the package's, and findings.
std::u16string validate(std::u16string_view package, std::u16string_view inventory);

}  // namespace tolvanix::sample
