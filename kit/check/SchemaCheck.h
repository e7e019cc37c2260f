// The documents of a package against their schemas.
#pragma once

#include <string>

namespace tolvanix::kit {

class Findings;

// xmllint, where there is one.
class SchemaCheck {
 public:
  // Looks for it in the folders of PATH.
  SchemaCheck();

  bool isPossible() const { return !xmllint.empty(); }

  // Each violation in the file is a finding in `name`; `remedy` says what to do about it.
  void check(const std::string& file, const char* schema, const std::string& name,
             const std::string& remedy, Findings& findings) const;

 private:
  std::string xmllint;  // its path; empty for none
};

}  // namespace tolvanix::kit
