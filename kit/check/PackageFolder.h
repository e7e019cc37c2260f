// The package that is checked: its folder, which is the current one from then on, as it is for the
// program that works there.
#pragma once

#include <optional>
#include <string>

#include "check/Image.h"

namespace tolvanix::kit {

class Findings;

class PackageFolder {
 public:
  // Throws BadInput for what is no folder.
  explicit PackageFolder(const std::string& folder);

  // What the package is made for: by its program, or its validation library when there is none or
  // one for each system.
  Image target() const { return madeFor; }

  // The name that a file of the package has, with '/': in a package for Windows its letter case
  // does not count. None when there is no such file.
  std::optional<std::string> find(const std::string& name) const;

  void checkProgram(Findings& findings) const;
  void checkHelper(Findings& findings) const;

 private:
  Image madeFor = kImageHere;
};

inline constexpr char kWindowsProgram[] = "tolvanix.exe";
inline constexpr char kLinuxProgram[] = "tolvanix";
inline constexpr char kLibrary[] = "kivvalid.dll";
inline constexpr char kHelperFolder[] = "tolvanixhelper64";
inline constexpr char kHelper[] = "tolvanixhelper64/tolvanixhelper64.exe";

}  // namespace tolvanix::kit
