#include "check/PackageFolder.h"

#include <cstring>
#include <string_view>

#include "check/Findings.h"
#include "common/Files.h"
#include "common/Outcome.h"
#include "winapi/Owner.h"

namespace tolvanix::kit {

namespace {

constexpr char kPutThere[] = "put it there, by that name";

// The name in its own letter case; none when there is no such entry in the folder.
std::optional<std::string> entryName(const std::string& folder, const std::string& name) {
  WIN32_FIND_DATAA found{};
  const FindOwner search(FindFirstFileA((folder + name).c_str(), &found));
  if (!search) return std::nullopt;
  return found.cFileName;
}

}  // namespace

PackageFolder::PackageFolder(const std::string& folder) {
  if (!isFolder(folder)) throw BadInput(folder + ": this is no folder");
  if (SetCurrentDirectoryA(folder.c_str()) == FALSE) {
    throw BadInput(folder + ": the folder cannot be entered, or its path is too long");
  }
  madeFor = Image::kWindows;  // while names are looked for whatever their letter case
  const bool forWindows = find(kWindowsProgram).has_value();
  const auto library = find(kLibrary);
  madeFor = Image::kLinux;
  if (forWindows == find(kLinuxProgram).has_value()) {
    madeFor = library ? imageOf(readFile(*library)) : kImageHere;
    if (madeFor != Image::kWindows && madeFor != Image::kLinux) madeFor = kImageHere;
  } else if (forWindows) {
    madeFor = Image::kWindows;
  }
}

std::optional<std::string> PackageFolder::find(const std::string& name) const {
  std::string found;
  std::string_view rest = name;
  while (!rest.empty()) {
    const std::string part(rest.substr(0, rest.find('/')));
    rest.remove_prefix(part.size());
    const auto entry = entryName(found, part);
    if (!entry || (madeFor == Image::kLinux && *entry != part)) return std::nullopt;
    found += *entry;
    if (rest.empty() || !isFolder(found)) break;
    found += '/';
    rest.remove_prefix(1);
  }
  if (!rest.empty() || isFolder(found)) return std::nullopt;
  return found;
}

void PackageFolder::checkProgram(Findings& findings) const {
  const char* const name = madeFor == Image::kWindows ? kWindowsProgram : kLinuxProgram;
  const auto program = find(name);
  if (!program) {
    findings.error(name, "the program is missing", kPutThere);
  } else if (const Image image = imageOf(readFile(*program)); image != madeFor) {
    findings.error(*program, std::string("this is ") + nameOf(image),
                   std::string("put the program ") + nameOf(madeFor) + " there");
  }
}

void PackageFolder::checkHelper(Findings& findings) const {
  const auto helper = find(kHelper);
  if (!helper) {
    findings.error(kHelper, "the helper program is missing", kPutThere);
    return;
  }
  const Image image = imageOf(readFile(*helper));
  const bool starts = image == madeFor || (image == Image::kScript && madeFor == Image::kLinux);
  if (!starts) {
    findings.error(*helper, std::string("this is ") + nameOf(image),
                   std::string("build it as a program ") + nameOf(madeFor));
  }
}

}  // namespace tolvanix::kit
