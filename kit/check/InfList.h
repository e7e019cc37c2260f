// The INF files of a package, in the order in which the program tries them.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "install/CInf.h"

namespace tolvanix::kit {

class Findings;

struct PackageInf {
  std::string name;
  std::string encoding;       // "UTF-16"
  std::string className;      // empty when the program cannot use the file
  std::string driverVersion;  // empty when it gives none
  std::vector<std::string> hardwareIds;
  std::unique_ptr<CInf> search;  // null when the program cannot use the file
};

// The file that the program takes for a hardware ID, and whether it is the right one.
struct InfChoice {
  const PackageInf* taken = nullptr;   // null when no file lists the ID
  const PackageInf* better = nullptr;  // one after it that lists the ID more exactly; null for none
};

class InfList {
 public:
  // Those of the current folder. What is wrong with them by themselves is a finding.
  explicit InfList(Findings& findings);

  const std::vector<PackageInf>& files() const { return infs; }
  InfChoice choose(const std::string& hardwareId);

 private:
  std::vector<PackageInf> infs;
};

}  // namespace tolvanix::kit
