// Regular expressions. Apart from the tests, because each file that uses the library's templates
// takes seconds longer to compile.
#pragma once

#include <string>

namespace tolvanix::test {

// Each match of the pattern (ECMAScript) replaced; "$1" is what its first group matched.
std::string replaced(const std::string& text, const std::string& pattern,
                     const std::string& replacement);

// Whether the pattern matches some part of the text.
bool isMatch(const std::string& text, const std::string& pattern);

}  // namespace tolvanix::test
