#include "support/Patterns.h"

#include <regex>

namespace tolvanix::test {

std::string replaced(const std::string& text, const std::string& pattern,
                     const std::string& replacement) {
  return std::regex_replace(text, std::regex(pattern), replacement);
}

bool isMatch(const std::string& text, const std::string& pattern) {
  return std::regex_search(text, std::regex(pattern));
}

}  // namespace tolvanix::test
