#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "text/Ascii.h"
#include "text/Hex.h"
#include "winapi/posix/base/Failure.h"
#include "winapi/posix/inf/InfFile.h"
#include "winapi/winapi.h"

namespace {

using tolvanix::equalIgnoringCase;
using tolvanix::readHex;
using tolvanix::winapi::fail;
using tolvanix::winapi::InfFile;
using tolvanix::winapi::outOfMemory;

struct SetupClass {
  const char* name;
  const char* guid;
};

// Published: "System-Defined Device Setup Classes Available to Vendors"
// (learn.microsoft.com/windows-hardware/drivers/install).
constexpr SetupClass kSetupClasses[] = {
    {"1394", "{6bdd1fc1-810f-11d0-bec7-08002be2092f}"},
    {"Battery", "{72631e54-78a4-11d0-bcf7-00aa00b7b32a}"},
    {"Biometric", "{53d29ef7-377c-4d14-864b-eb3a85769359}"},
    {"Bluetooth", "{e0cbf06c-cd8b-4647-bb8a-263b43f0f974}"},
    {"Camera", "{ca3e7ab9-b4c3-4ae6-8251-579ef933890f}"},
    {"CDROM", "{4d36e965-e325-11ce-bfc1-08002be10318}"},
    {"DiskDrive", "{4d36e967-e325-11ce-bfc1-08002be10318}"},
    {"Display", "{4d36e968-e325-11ce-bfc1-08002be10318}"},
    {"Extension", "{e2f84ce7-8efa-411c-aa69-97454ca4cb57}"},
    {"FDC", "{4d36e969-e325-11ce-bfc1-08002be10318}"},
    {"Firmware", "{f2e7dd72-6468-4e36-b6f1-6488f42c1b52}"},
    {"FloppyDisk", "{4d36e980-e325-11ce-bfc1-08002be10318}"},
    {"HDC", "{4d36e96a-e325-11ce-bfc1-08002be10318}"},
    {"HIDClass", "{745a17a0-74d3-11d0-b6fe-00a0c90f57da}"},
    {"Image", "{6bdd1fc6-810f-11d0-bec7-08002be2092f}"},
    {"Infrared", "{6bdd1fc5-810f-11d0-bec7-08002be2092f}"},
    {"Keyboard", "{4d36e96b-e325-11ce-bfc1-08002be10318}"},
    {"MEDIA", "{4d36e96c-e325-11ce-bfc1-08002be10318}"},
    {"MediumChanger", "{ce5939ae-ebde-11d0-b181-0000f8753ec4}"},
    {"Modem", "{4d36e96d-e325-11ce-bfc1-08002be10318}"},
    {"Monitor", "{4d36e96e-e325-11ce-bfc1-08002be10318}"},
    {"Mouse", "{4d36e96f-e325-11ce-bfc1-08002be10318}"},
    {"MTD", "{4d36e970-e325-11ce-bfc1-08002be10318}"},
    {"Multifunction", "{4d36e971-e325-11ce-bfc1-08002be10318}"},
    {"MultiportSerial", "{50906cb8-ba12-11d1-bf5d-0000f805f530}"},
    {"Net", "{4d36e972-e325-11ce-bfc1-08002be10318}"},
    {"NetClient", "{4d36e973-e325-11ce-bfc1-08002be10318}"},
    {"NetService", "{4d36e974-e325-11ce-bfc1-08002be10318}"},
    {"NetTrans", "{4d36e975-e325-11ce-bfc1-08002be10318}"},
    {"PCMCIA", "{4d36e977-e325-11ce-bfc1-08002be10318}"},
    {"Ports", "{4d36e978-e325-11ce-bfc1-08002be10318}"},
    {"Printer", "{4d36e979-e325-11ce-bfc1-08002be10318}"},
    {"Processor", "{50127dc3-0f36-415e-a6cc-4cb3be910b65}"},
    {"SCSIAdapter", "{4d36e97b-e325-11ce-bfc1-08002be10318}"},
    {"SDHost", "{a0a588a4-c46f-4b37-b7ea-c82fe89870c6}"},
    {"SecurityDevices", "{d94ee5d8-d189-4994-83d2-f68d7d41b0e6}"},
    {"Sensor", "{5175d334-c371-4806-b3ba-71fd53c9258d}"},
    {"SmartCardReader", "{50dd5230-ba8a-11d1-bf5d-0000f805f530}"},
    {"SoftwareComponent", "{5c4c3332-344d-483c-8739-259e934c9cc8}"},
    {"System", "{4d36e97d-e325-11ce-bfc1-08002be10318}"},
    {"TapeDrive", "{6d807884-7d21-11cf-801c-08002be10318}"},
    {"Unknown", "{4d36e97e-e325-11ce-bfc1-08002be10318}"},
    {"USB", "{36fc9e60-c465-11cf-8056-444553540000}"},
    {"Volume", "{71a27cdd-812a-11d0-bec7-08002be2092f}"},
    {"WPD", "{eec5ad98-8080-425f-922a-dabf3de3f69a}"},
};

// From the form "{4d36e972-e325-11ce-bfc1-08002be10318}".
std::optional<GUID> parseGuid(std::string_view text) {
  constexpr std::string_view kForm = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  if (text.size() != kForm.size()) return std::nullopt;
  std::string digits;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (kForm[i] == 'x') {
      digits += text[i];
    } else if (text[i] != kForm[i]) {
      return std::nullopt;
    }
  }
  std::array<std::uint32_t, 11> parts{};
  constexpr std::array<std::size_t, 11> kLengths = {8, 4, 4, 2, 2, 2, 2, 2, 2, 2, 2};
  std::string_view rest = digits;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const auto value = readHex(rest.substr(0, kLengths[i]));
    if (!value) return std::nullopt;
    parts[i] = *value;
    rest.remove_prefix(kLengths[i]);
  }
  GUID guid{
      parts[0], static_cast<std::uint16_t>(parts[1]), static_cast<std::uint16_t>(parts[2]), {}};
  std::transform(parts.begin() + 3, parts.end(), guid.Data4,
                 [](std::uint32_t part) { return static_cast<std::uint8_t>(part); });
  return guid;
}

// What [Version] says of the class, %names% left.
struct VersionValues {
  std::optional<std::string> signature;
  std::optional<std::string> classGuid;
  std::optional<std::string> className;
};

VersionValues versionValues(InfFile& file) {
  const auto value = [&file](std::string_view key) -> std::optional<std::string> {
    const auto found = file.firstValue("Version", key);
    if (!found) return std::nullopt;
    return std::string(*found);
  };
  return {value("Signature"), value("ClassGUID"), value("Class")};
}

// Whether nothing that follows in the file could change the value.
bool isFinal(const std::optional<std::string>& value) {
  return value && value->find('%') == std::string::npos;
}

// [Version] is near the beginning of most files, so the whole file is read only when that does not
// do.
DWORD readVersion(const char* infName, InfFile& file, VersionValues& values) {
  if (infName == nullptr) return ERROR_INVALID_PARAMETER;
  if (std::strpbrk(infName, "\\/") == nullptr) return ERROR_FILE_NOT_FOUND;
  if (file.openBeginning(infName)) {
    values = versionValues(file);
    if (isFinal(values.signature) && isFinal(values.classGuid) && isFinal(values.className)) {
      return ERROR_SUCCESS;
    }
  }
  UINT errorLine = 0;
  const DWORD error = file.open(infName, errorLine);
  if (error == ERROR_SUCCESS) values = versionValues(file);
  return error;
}

bool isSignature(std::string_view text) {
  return equalIgnoringCase(text, "$Windows NT$") || equalIgnoringCase(text, "$Chicago$");
}

bool sameGuid(const GUID& left, const GUID& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

std::string_view nameOfClass(const GUID& guid) {
  const auto* const found =
      std::find_if(std::begin(kSetupClasses), std::end(kSetupClasses),
                   [&](const SetupClass& known) { return sameGuid(*parseGuid(known.guid), guid); });
  return found != std::end(kSetupClasses) ? found->name : "";
}

}  // namespace

BOOL SetupDiGetINFClassA(const char* infName, GUID* classGuid, char* className, DWORD classNameSize,
                         DWORD* requiredSize) try {
  InfFile file;
  VersionValues values;
  const DWORD error = readVersion(infName, file, values);
  if (error != ERROR_SUCCESS) return fail(error);
  const std::string classText(file.expand(values.className.value_or("")));
  std::string_view name = classText;
  if (!isSignature(values.signature.value_or("")) || (name.empty() && !values.classGuid)) {
    return fail(ERROR_NO_ASSOCIATED_CLASS);
  }
  const auto guid = values.classGuid ? parseGuid(file.expand(*values.classGuid)) : GUID{};
  if (!guid || classGuid == nullptr || className == nullptr) return fail(ERROR_INVALID_PARAMETER);
  if (name.empty()) name = nameOfClass(*guid);
  *classGuid = *guid;
  if (requiredSize != nullptr) *requiredSize = static_cast<DWORD>(name.size() + 1);
  if (classNameSize <= name.size()) return fail(ERROR_INSUFFICIENT_BUFFER);
  std::memcpy(className, name.data(), name.size());
  className[name.size()] = '\0';
  SetLastError(ERROR_SUCCESS);
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}

BOOL SetupDiClassGuidsFromNameA(const char* className, GUID* classGuidList, DWORD size,
                                DWORD* requiredSize) try {
  if (className == nullptr || requiredSize == nullptr) return fail(ERROR_INVALID_PARAMETER);
  const auto* const found = std::find_if(
      std::begin(kSetupClasses), std::end(kSetupClasses),
      [&](const SetupClass& known) { return equalIgnoringCase(known.name, className); });
  *requiredSize = found != std::end(kSetupClasses) ? 1 : 0;
  if (*requiredSize > size) return fail(ERROR_INSUFFICIENT_BUFFER);
  if (*requiredSize != 0) *classGuidList = *parseGuid(found->guid);
  return TRUE;
} catch (const std::bad_alloc&) {
  return outOfMemory(FALSE);
}
