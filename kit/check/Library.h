// The package's validation library.
#pragma once

namespace tolvanix::kit {

class Findings;
class PackageFolder;

// Whether it can be loaded and has what the program calls. One of another system is not loaded:
// then its export table is read.
void checkLibrary(const PackageFolder& package, Findings& findings);

}  // namespace tolvanix::kit
