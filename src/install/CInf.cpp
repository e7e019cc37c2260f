#include "install/CInf.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "install/DevHelper.h"
#include "log/DebugWriter.h"

namespace tolvanix {

namespace {

constexpr char kOpenPlace[] = "CInf::Open";
constexpr DWORD kClassNameSize = 64;
constexpr unsigned kFirstListField = 2;  // of the decorations, and of the IDs
constexpr unsigned kLastDecorationField = 99;

// For the trace.
std::string installSectionOf(INFCONTEXT& line) {
  std::string section;
  GetField(line, 1, section);
  return section;
}

bool isZero(const GUID& guid) {
  constexpr GUID kZero{};
  return std::memcmp(&guid, &kZero, sizeof guid) == 0;
}

}  // namespace

DWORD CInf::Open(std::string_view fileName, int flag) try {
  std::string_view name = fileName;
  if (name.starts_with('"')) name = name.substr(1, std::max<std::size_t>(name.size(), 2) - 2);
  if (flag == 0 && name.find('\\') == std::string_view::npos) path = ".\\";
  path.append(name);

  const HINF opened = SetupOpenInfFileA(path.c_str(), nullptr, INF_STYLE_WIN4, nullptr);
  if (opened == INVALID_HANDLE_VALUE) {
    const DWORD error = lastErrorOr(ERROR_INVALID_DATA);
    PrintError(error, kOpenPlace, __LINE__);
    return error;
  }
  infHandle.reset(opened);
  return readClass();
} catch (const std::bad_alloc&) {
  PrintError(ERROR_NOT_ENOUGH_MEMORY, kOpenPlace, __LINE__);
  return ERROR_NOT_ENOUGH_MEMORY;
}

DWORD CInf::readClass() {
  // Wine leaves an output that it has nothing for as it was, and the last error too.
  char name[kClassNameSize] = "";
  classGuid = GUID{};
  SetLastError(ERROR_SUCCESS);
  if (SetupDiGetINFClassA(path.c_str(), &classGuid, name, kClassNameSize, nullptr) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_NO_ASSOCIATED_CLASS);
    PrintError(error, kOpenPlace, __LINE__);
    return error;
  }
  name[kClassNameSize - 1] = '\0';
  className = name;
  if (isZero(classGuid)) {
    DWORD count = 0;
    SetupDiClassGuidsFromNameA(name, &classGuid, 1, &count);
  }
  return ERROR_SUCCESS;
}

DWORD LineKey::take(const INFCONTEXT& line) {
  source = line;
  const DWORD error = FindField(source, 0);
  if (error == ERROR_SUCCESS) isRead = false;
  return error;
}

const SPString& LineKey::get() {
  if (!isRead) GetField(source, 0, text);
  isRead = true;
  return text;
}

DWORD CInf::EnumManufacturers() {
  INFCONTEXT line{};
  if (SetupFindFirstLineA(infHandle.get(), "Manufacturer", nullptr, &line) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_LINE_NOT_FOUND);
    PrintError(error, "CInf::EnumManufacturers", __LINE__);
    return error;
  }
  DWORD result = ERROR_SUCCESS;
  do {
    result = searchManufacturer(line);
  } while (result == ERROR_NO_MORE_ITEMS && SetupFindNextLine(&line, &line) != FALSE);
  return result;
}

// ERROR_NO_MORE_ITEMS when no model of the manufacturer carries the ID.
DWORD CInf::searchManufacturer(INFCONTEXT& line) {
  std::string section;
  DWORD error = manufacturer.take(line);
  if (error == ERROR_SUCCESS) error = GetField(line, 1, section);
  if (error != ERROR_SUCCESS) return error;
  TRACE_STEP("EnumManufacturers->EnumDevices for mfg 1, %s:%s.\n", manufacturer.get().c_str(),
             section.c_str());
  if (EnumDevices(section) == ERROR_SUCCESS) return ERROR_SUCCESS;

  std::string name;
  for (unsigned field = kFirstListField;
       field <= kLastDecorationField && GetField(line, field, name) == ERROR_SUCCESS; ++field) {
    name.insert(0, section + ".");
    TRACE_STEP("EnumManufacturers->EnumDevices for mfg %u, %s:%s.\n", field,
               manufacturer.get().c_str(), name.c_str());
    if (EnumDevices(name) == ERROR_SUCCESS) return ERROR_SUCCESS;
  }
  return ERROR_NO_MORE_ITEMS;
}

DWORD CInf::EnumDevices(const std::string& section) {
  INFCONTEXT line{};
  if (SetupFindFirstLineA(infHandle.get(), section.c_str(), nullptr, &line) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_LINE_NOT_FOUND);
    TRACE_STEP("EnumDevices for model, %s: no devices found.\n", section.c_str());
    return error;
  }
  wantedId = WantedId(hardwareId);
  DWORD result = ERROR_SUCCESS;
  do {
    result = searchLine(line);
  } while (result == ERROR_NO_MORE_ITEMS && SetupFindNextLine(&line, &line) != FALSE);
  return result;
}

// ERROR_NO_MORE_ITEMS when the model line does not carry the ID.
DWORD CInf::searchLine(INFCONTEXT& line) {
  const DWORD fieldCount = SetupGetFieldCount(&line);
  DWORD error = description.take(line);
  // A line with any field has an install section.
  if (error == ERROR_SUCCESS && fieldCount == 0) error = FindField(line, 1);
  if (error != ERROR_SUCCESS) return error;
  TRACE_STEP("EnumDevices for model, %s:%s\n", description.get().c_str(),
             installSectionOf(line).c_str());
  TRACE_STEP("Search for HwID %s: ", hardwareId.c_str());
  const std::optional<unsigned> index = findId(line, fieldCount);
  if (!index) {
    TRACE_STEP("not found.\n");
    return ERROR_NO_MORE_ITEMS;
  }
  TRACE_STEP("found. i = %u\n", *index);
  return ERROR_SUCCESS;
}

// The index of the first ID of the line that matches. A line without an ID counts as one with an
// empty one, and that is contained in every other.
std::optional<unsigned> CInf::findId(INFCONTEXT& line, DWORD fieldCount) {
  DWORD field = kFirstListField;
  for (; field <= fieldCount && GetField(line, field, listedId) == ERROR_SUCCESS; ++field) {
    if (wantedId.matches(listedId)) return field - kFirstListField;
  }
  if (field == kFirstListField) return 0;
  return std::nullopt;
}

}  // namespace tolvanix
