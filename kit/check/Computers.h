// A package on the computers that it is for.
#pragma once

#include <string>
#include <vector>

namespace tolvanix::kit {

class Findings;
class PackageFolder;
class SchemaCheck;

struct Computer {
  std::string name;  // as given
  std::string path;  // absolute
};

// Builds for Linux in place of the package's own; absolute paths, empty for none.
struct Substitutes {
  std::string validationLibrary;
  std::string helperProgram;
};

// Throws BadInput for what is neither a registry export nor a copy of a /sys tree.
Computer computerOf(const std::string& name);

// A table of what an update would do on each. Throws BadInput when the package cannot be run here.
std::string tryOnComputers(const PackageFolder& package, const Substitutes& substitutes,
                           const std::vector<Computer>& computers, const SchemaCheck& schemas,
                           Findings& findings);

}  // namespace tolvanix::kit
