#include "check/Library.h"

#include <algorithm>
#include <string>
#include <vector>

#include "check/Findings.h"
#include "check/PackageFolder.h"
#include "check/PeFile.h"
#include "common/Files.h"
#include "winapi/Owner.h"

namespace tolvanix::kit {

namespace {

constexpr const char* kExports[] = {"SPValidate", "SPFreeValidationXML"};

void reportMissing(const std::string& file, const char* name, Findings& findings) {
  findings.error(file, std::string("it does not export ") + name,
                 "export it by that very name (sdk/kivvalid.h)");
}

void checkLoaded(const std::string& file, Findings& findings) {
  char path[2 * MAX_PATH] = "";
  const DWORD length = GetFullPathNameA(file.c_str(), sizeof path, path, nullptr);
  const ModuleOwner library(length < sizeof path ? LoadLibraryA(path) : nullptr);
  if (!library) {
    findings.error(file, "it cannot be loaded (error " + std::to_string(GetLastError()) + ")",
                   "build it for 64 bits, and link in what it needs");
    return;
  }
  for (const char* const name : kExports) {
    if (GetProcAddress(library.get(), name) == nullptr) reportMissing(file, name, findings);
  }
}

void checkExportTable(const std::string& file, const std::string& bytes, Findings& findings) {
  const auto names = peExports(bytes);
  if (!names) {
    findings.error(file, "this is no whole library for 64-bit Windows", "build it anew");
    return;
  }
  for (const char* const name : kExports) {
    if (std::find(names->begin(), names->end(), name) == names->end()) {
      reportMissing(file, name, findings);
    }
  }
}

}  // namespace

void checkLibrary(const PackageFolder& package, Findings& findings) {
  const auto file = package.find(kLibrary);
  if (!file) {
    findings.error(kLibrary, "the validation library is missing",
                   "put it there, by that name on Linux, too");
    return;
  }
  const std::string bytes = readFile(*file);
  const Image image = imageOf(bytes);
  if (image != package.target()) {
    findings.error(*file,
                   std::string("this is ") + nameOf(image) + ", and the package is " +
                       nameOf(package.target()),
                   "build it for the program's system");
  } else if (image == kImageHere) {
    checkLoaded(*file, findings);
  } else if (image == Image::kWindows) {
    checkExportTable(*file, bytes, findings);
  } else {
    findings.warning(*file, "it is for Linux and was not loaded", "check the package on Linux");
  }
}

}  // namespace tolvanix::kit
