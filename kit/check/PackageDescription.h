// The devices in package.xml, in the form of the sample package's validation library.
#pragma once

#include <string>
#include <vector>

namespace tolvanix::kit {

class Findings;

struct PackageDevice {
  std::string hardwareId;
  std::string version;  // of the driver that the package promises
};

inline constexpr char kDescription[] = "package.xml";

// Throws BadInput for what is no XML, or too much of it.
std::vector<PackageDevice> readDescription(const std::string& file, Findings& findings);

}  // namespace tolvanix::kit
