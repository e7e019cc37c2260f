// package.xml against the INF files.
#pragma once

#include <string>
#include <vector>

#include "check/PackageDescription.h"

namespace tolvanix::kit {

class Findings;
class InfList;

// For each device: is the INF file that the program takes for it the right one, and does it bring
// the version that is promised?
void checkDevices(const std::vector<PackageDevice>& devices, InfList& infs, Findings& findings);

}  // namespace tolvanix::kit
