#include "check/InfList.h"

#include <algorithm>

#include "check/Findings.h"
#include "check/InfText.h"
#include "common/Files.h"
#include "common/Outcome.h"
#include "install/FileEnum.h"
#include "install/WantedId.h"
#include "winapi/Owner.h"

namespace tolvanix::kit {

namespace {

// No file lists this, so what is taken for it is taken for every device.
constexpr char kNoId[] = "\x01";

constexpr char kSignatureRemedy[] = "write Signature = \"$Windows NT$\" into [Version]";

// Why the program does not open the file.
void reportUnusable(const PackageInf& file, InfEncoding encoding, DWORD error,
                    const std::string& path, Findings& findings) {
  if (encoding == InfEncoding::kUtf16BigEndian || encoding == InfEncoding::kUtf16Unmarked) {
    findings.error(file.name, std::string("it is in ") + nameOf(encoding),
                   "save it as UTF-16 (little-endian) with a byte-order mark, or as ASCII");
    return;
  }
  if (error == ERROR_WRONG_INF_STYLE) {
    findings.error(file.name, "it has no signature of an INF file", kSignatureRemedy);
    return;
  }
  const InfOwner inf(SetupOpenInfFileA(path.c_str(), nullptr, INF_STYLE_WIN4, nullptr));
  if (!inf) {
    findings.error(file.name, "it cannot be read as an INF file",
                   "begin it with a section, and close the brackets of each");
  } else if (versionValue(inf.get(), "Class", 1).empty() &&
             versionValue(inf.get(), "ClassGuid", 1).empty()) {
    findings.error(file.name, "it names no class of devices",
                   "write Class and ClassGuid into [Version]");
  } else {
    findings.error(file.name, "its class of devices or its signature cannot be used",
                   "correct Class, ClassGuid and Signature in [Version]");
  }
}

PackageInf readInf(const std::string& path, Findings& findings) {
  PackageInf file;
  file.name = path.substr(path.rfind('\\') + 1);
  const InfEncoding encoding = infEncoding(readFile(file.name));
  file.encoding = nameOf(encoding);
  auto search = std::make_unique<CInf>();
  const DWORD error = search->Open(path, 0);
  if (error != ERROR_SUCCESS) {
    reportUnusable(file, encoding, error, path, findings);
    return file;
  }
  file.className = search->getClassName().c_str();
  search->setHardwareId(kNoId);
  if (search->EnumManufacturers() == ERROR_SUCCESS) {
    findings.error(file.name,
                   "the model \"" + std::string(search->getDescription().c_str()) +
                       "\" has an empty hardware ID, so the file is taken for every device",
                   "give the model its hardware ID");
  }
  const InfOwner inf(SetupOpenInfFileA(path.c_str(), nullptr, INF_STYLE_WIN4, nullptr));
  file.driverVersion = versionValue(inf.get(), "DriverVer", 2);
  file.hardwareIds = listedIds(inf.get());
  if (file.driverVersion.empty()) {
    findings.error(file.name, "its DriverVer has no version",
                   "write DriverVer = <date>,<version> into [Version]");
  }
  file.search = std::move(search);
  return file;
}

// How much of the wanted ID the file's best one has in common with it.
std::size_t exactness(const PackageInf& file, const std::string& hardwareId) {
  const WantedId wanted(hardwareId);
  std::size_t best = 0;
  for (const std::string& listed : file.hardwareIds) {
    if (wanted.matches(listed)) best = std::max(best, std::min(listed.size(), hardwareId.size()));
  }
  return best;
}

}  // namespace

InfList::InfList(Findings& findings) {
  FileEnum files("*.inf");
  for (bool more = files.FindFirst(); more; more = files.FindNext()) {
    const std::string path = files.GetFullPath();
    if (path.empty()) throw BadInput("an INF file's path is too long");
    infs.push_back(readInf(path, findings));
  }
  if (infs.empty()) findings.error("*.inf", "there is no INF file", "add those of the drivers");
}

InfChoice InfList::choose(const std::string& hardwareId) {
  InfChoice choice;
  std::size_t best = 0;
  for (PackageInf& file : infs) {
    if (!file.search) continue;
    file.search->setHardwareId(hardwareId);
    if (file.search->EnumManufacturers() != ERROR_SUCCESS) continue;
    const std::size_t found = exactness(file, hardwareId);
    if (choice.taken == nullptr) {
      choice.taken = &file;
      best = found;
    } else if (found > best) {
      choice.better = &file;
      best = found;
    }
  }
  return choice;
}

}  // namespace tolvanix::kit
