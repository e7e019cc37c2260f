// tolvanixkit check: whether a folder is a package that will work.
#pragma once

#include <string>
#include <vector>

#include "check/Computers.h"

namespace tolvanix::kit {

struct CheckOptions {
  std::string package;
  std::vector<std::string> computers;  // registry exports or copies of /sys trees
  Substitutes substitutes;
};

// Returns the exit code. Throws BadInput.
int check(const CheckOptions& options);

}  // namespace tolvanix::kit
