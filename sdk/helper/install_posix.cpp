// Elsewhere it is the registry export named by TOLVANIX_MACHINE that gets the driver: its devices'
// "DriverVersion" becomes the version of the INF file. An export is a list of changes, in which
// later ones override earlier ones; so the new values go to its end, and all that it
// contains already stays.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "install.h"
#include "validation/Version.h"
#include "winapi/ClassKeys.h"
#include "winapi/Owner.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/base/FileDescriptor.h"

namespace {

namespace fs = std::filesystem;
using tolvanix::DeviceSetOwner;
using tolvanix::InfOwner;
using tolvanix::RegistryKeyOwner;
using tolvanix::winapi::FileDescriptor;

using tolvanix::kClassKeys;
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr DWORD kTextSize = 1024;

ExitCode fail(ExitCode code, const std::string& subject, const char* problem) {
  std::fprintf(stderr, "%s: %s\n", subject.c_str(), problem);
  return code;
}

bool equalIgnoringCase(const char* left, const char* right) {
  return _mbsicmp(reinterpret_cast<const unsigned char*>(left),
                  reinterpret_cast<const unsigned char*>(right)) == 0;
}

std::string field(INFCONTEXT& line, DWORD index) {
  char text[kTextSize] = "";
  return SetupGetStringFieldA(&line, index, text, sizeof text, nullptr) != FALSE ? text : "";
}

// The second field of DriverVer in [Version]; empty when there is none.
std::string driverVersion(const char* infPath) {
  const InfOwner inf(SetupOpenInfFileA(infPath, nullptr, INF_STYLE_WIN4, nullptr));
  if (!inf) return {};
  INFCONTEXT line{};
  for (BOOL more = SetupFindFirstLineA(inf.get(), "Version", nullptr, &line); more != FALSE;
       more = SetupFindNextLine(&line, &line)) {
    if (equalIgnoringCase(field(line, 0).c_str(), "DriverVer")) return field(line, 2);
  }
  return {};
}

// The texts of a device's property, each with its zero; empty when the device lacks it.
std::string deviceProperty(HDEVINFO devices, SP_DEVINFO_DATA& device, DWORD property) {
  DWORD size = 0;
  SetupDiGetDeviceRegistryPropertyA(devices, &device, property, nullptr, nullptr, 0, &size);
  std::string texts(size, '\0');
  if (SetupDiGetDeviceRegistryPropertyA(devices, &device, property, nullptr,
                                        reinterpret_cast<BYTE*>(texts.data()), size,
                                        nullptr) == FALSE) {
    return {};
  }
  return texts;
}

bool hasHardwareId(const std::string& texts, const char* wantedId) {
  for (std::size_t at = 0; at < texts.size() && texts[at] != '\0';) {
    const char* const id = texts.c_str() + at;
    if (equalIgnoringCase(id, wantedId)) return true;
    at += std::string_view(id).size() + 1;
  }
  return false;
}

// The class keys, below that of all classes, of the devices that have the hardware ID.
std::set<std::string> driverKeys(const char* hardwareId) {
  std::set<std::string> keys;
  const DeviceSetOwner devices(
      SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD i = 0; SetupDiEnumDeviceInfo(devices.get(), i, &device) != FALSE; ++i) {
    if (!hasHardwareId(deviceProperty(devices.get(), device, SPDRP_HARDWAREID), hardwareId)) {
      continue;
    }
    std::string driver = deviceProperty(devices.get(), device, SPDRP_DRIVER);
    driver.erase(std::min(driver.find('\0'), driver.size()));
    if (!driver.empty()) keys.insert(driver);
  }
  return keys;
}

// None when the class key, or its version as a text of usual length, is missing.
std::optional<std::string> installedVersion(const std::string& driverKey) {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, (std::string(kClassKeys) + driverKey).c_str(), 0,
                    KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  const RegistryKeyOwner key(opened);
  char version[kTextSize] = "";
  DWORD size = sizeof version - 1;
  if (RegQueryValueExA(key.get(), "DriverVersion", nullptr, nullptr,
                       reinterpret_cast<BYTE*>(version), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return version;
}

// Negative, 0 or positive as the installed driver is older than, the same as or newer than the
// version; one without a version is older than any.
int compareInstalled(const std::string& driverKey, const std::string& version) {
  const auto installed = installedVersion(driverKey);
  if (!installed) return -1;
  return tolvanix::sample::compareVersions(std::u16string(installed->begin(), installed->end()),
                                           std::u16string(version.begin(), version.end()));
}

// What sets the version in one class key, with the file's line ends.
std::string registryChange(const std::string& driverKey, const std::string& version,
                           const std::string& lineEnd) {
  return lineEnd + R"([HKEY_LOCAL_MACHINE\)" + std::string(kClassKeys) + driverKey + ']' + lineEnd +
         R"("DriverVersion"=")" + version + '"' + lineEnd;
}

// Puts ASCII text to the end of an export, in the encoding of the export.
void append(std::string& bytes, const std::string& text) {
  const bool wide = bytes.starts_with(kUtf16Mark);
  for (const char c : text) {
    bytes += c;
    if (wide) bytes += '\0';
  }
}

// Replaces the file at once and keeps its owner and permissions: a reader gets the old one or the
// new one, whole. False, with errno, leaves the old one and nothing beside it.
bool replaceFile(const fs::path& file, const std::string& bytes) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return false;
  std::string temporary = file.string() + ".XXXXXX";
  const FileDescriptor copy(mkostemp(temporary.data(), O_CLOEXEC));
  if (copy.get() < 0) return false;
  if (tolvanix::winapi::writeFully(copy.get(), bytes.data(), bytes.size()) != bytes.size() ||
      fchown(copy.get(), status.st_uid, status.st_gid) != 0 ||
      fchmod(copy.get(), status.st_mode & 07777) != 0 || fsync(copy.get()) != 0 ||
      rename(temporary.c_str(), file.c_str()) != 0) {
    const int error = errno;
    unlink(temporary.c_str());
    errno = error;
    return false;
  }
  // The new name survives a failure of the power only when the folder is written, too.
  const FileDescriptor folder(open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  fsync(folder.get());
  return true;
}

bool isMissingRight(int error) {
  return error == EACCES || error == EPERM || error == EROFS;
}

}  // namespace

ExitCode install(const char* hardwareId, const char* infPath) {
  const char* const machine = std::getenv("TOLVANIX_MACHINE");
  if (machine == nullptr || *machine == '\0') {
    return fail(kNoMachine, "TOLVANIX_MACHINE", "must name the registry export to update");
  }
  std::error_code error;
  const fs::path file = fs::canonical(machine, error);  // a link to the file stays
  std::optional<std::string> bytes;
  if (!error && fs::is_regular_file(file, error)) {
    bytes = tolvanix::winapi::readWholeFile(file.c_str());
  }
  if (!bytes) return fail(kNoMachine, machine, "is no registry export that can be read");

  const std::string version = driverVersion(infPath);
  if (version.empty() || version.find_first_not_of("0123456789.") != std::string::npos) {
    return fail(kInfUnusable, infPath, "has no DriverVer with a version in [Version]");
  }
  const std::set<std::string> keys = driverKeys(hardwareId);
  if (keys.empty()) return fail(kNoDevice, hardwareId, "no device with a driver has this ID");

  const std::string lineEnd = bytes->find('\r') != std::string::npos ? "\r\n" : "\n";
  std::string changes;
  bool allNewer = true;
  for (const std::string& key : keys) {
    const int order = compareInstalled(key, version);
    if (order < 0) changes += registryChange(key, version, lineEnd);
    if (order <= 0) allNewer = false;
  }
  if (allNewer) return fail(kNotBetter, infPath, "is older than the installed driver");
  if (changes.empty()) return kInstalled;
  append(*bytes, lineEnd + changes);  // the last line may have no end
  if (!replaceFile(file, *bytes)) {
    return fail(isMissingRight(errno) ? kNoRights : kNotInstalled, machine, "cannot be written");
  }
  return kInstalled;
}
