#include "inventory/CIniReader.h"

#include <cstring>
#include <ios>
#include <new>
#include <sstream>
#include <utility>

#include "log/DebugWriter.h"
#include "winapi/winapi.h"

namespace tolvanix {

namespace {

constexpr DWORD kSectionBufferSize = 65535;
constexpr DWORD kValueSize = 255;

}  // namespace

CIniReader::CIniReader(std::string file) : fileName(std::move(file)) {}

std::vector<const char*> CIniReader::ReadSections() {
  TRACE_STEP("CIniReader::ReadSections function entered\n");
  std::vector<const char*> names;
  sectionBuffer.reset(new (std::nothrow) char[kSectionBufferSize]());
  if (!sectionBuffer) {
    TRACE_STEP(
        "CIniReader::ReadSections  Could not able to allocate the sufficient memory for buffer "
        "\n");
  } else if (GetPrivateProfileSectionNamesA(sectionBuffer.get(), kSectionBufferSize,
                                            fileName.c_str()) == 0) {
    TRACE_STEP("CIniReader::ReadSections  Could not able to find the ini file %s \n",
               fileName.c_str());
  } else {
    for (const char* name = sectionBuffer.get(); *name != '\0'; name += std::strlen(name) + 1) {
      names.push_back(name);
      TRACE_STEP("CIniReader::ReadSections  Got a section %s\n", name);
    }
  }
  TRACE_STEP("CIniReader::ReadSections function exiting\n");
  return names;
}

std::string CIniReader::ReadString(const std::string& section, const std::string& key,
                                   const std::string& defaultValue) const {
  TRACE_STEP("CIniReader::ReadString function entered\n");
  char value[kValueSize] = "";
  // A read that succeeds does not everywhere set the error anew.
  SetLastError(ERROR_SUCCESS);
  GetPrivateProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), value, kValueSize,
                           fileName.c_str());
  if (GetLastError() != ERROR_SUCCESS) {
    value[0] = '\0';
    TRACE_STEP(
        "CIniReader::ReadString Failed to get the key value for %s from section %s in "
        "configuratin file %s\n",
        key.c_str(), section.c_str(), fileName.c_str());
  }
  TRACE_STEP("CIniReader::ReadString function exiting\n");
  return value;
}

void CIniReader::GetConfigFileEntries(std::vector<VendorFilter>& filters) {
  const std::vector<const char*> sections = ReadSections();
  TRACE_STEP("CIniReader::GetConfigFileEntries function entered\n");
  for (const char* const section : sections) {
    const std::string value = ReadString(section, "VendorID", "0000");
    const auto vendorID = static_cast<std::uint16_t>(ParseHexValue(value));
    TRACE_STEP("CIniReader::GetConfigFileEntries : Section %s is having VendorID %d \n", section,
               vendorID);
    entries.push_back({section, vendorID});
  }
  TRACE_STEP("CIniReader::GetConfigFileEntries function exiting\n");
  filters = entries;
}

std::uint32_t CIniReader::ParseHexValue(const std::string& text) {
  std::istringstream stream(text);
  std::uint32_t value = 0;
  stream >> std::hex >> value;
  return stream.fail() ? 0 : value;
}

}  // namespace tolvanix
