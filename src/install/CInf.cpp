#include "install/CInf.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <tuple>

#include "install/DevHelper.h"
#include "log/DebugWriter.h"

namespace tolvanix {

namespace {

constexpr char kOpenPlace[] = "CInf::Open";
constexpr DWORD kClassNameSize = 64;
constexpr unsigned kFirstListField = 2;  // of the decorations, and of the IDs
constexpr unsigned kLastDecorationField = 99;

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
  // Some systems leave an output that they have nothing for as it was, and an error too.
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
  const bool tracing = debugLevelAtLeast(kTraceSteps);
  if (tracing) {
    traceStep("EnumManufacturers->EnumDevices for mfg 1, %s:%s.\n", manufacturer.get().c_str(),
              section.c_str());
  }
  if (EnumDevices(section) == ERROR_SUCCESS) return ERROR_SUCCESS;

  std::string name;
  for (unsigned field = kFirstListField;
       field <= kLastDecorationField && GetField(line, field, name) == ERROR_SUCCESS; ++field) {
    name.insert(0, section + ".");
    if (tracing) {
      traceStep("EnumManufacturers->EnumDevices for mfg %u, %s:%s.\n", field,
                manufacturer.get().c_str(), name.c_str());
    }
    if (EnumDevices(name) == ERROR_SUCCESS) return ERROR_SUCCESS;
  }
  return ERROR_NO_MORE_ITEMS;
}

DWORD CInf::EnumDevices(const std::string& section) {
  INFCONTEXT line{};
  if (SetupFindFirstLineA(infHandle.get(), section.c_str(), nullptr, &line) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_LINE_NOT_FOUND);
    traceStep("EnumDevices for model, %s: no devices found.\n", section.c_str());
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
  DWORD error = description.take(line);
  if (error != ERROR_SUCCESS) return error;
  const DWORD fieldCount = SetupGetFieldCount(&line);
  const bool tracing = debugLevelAtLeast(kTraceSteps);
  if (tracing) {
    std::string installSection;
    error = GetField(line, 1, installSection);
    if (error != ERROR_SUCCESS) return error;
    traceStep("EnumDevices for model, %s:%s\n", description.get().c_str(), installSection.c_str());
    traceStep("Search for HwID %s: ", hardwareId.c_str());
  } else if (fieldCount == 0) {
    return FindField(line, 1);
  }
  const int index = findId(line, fieldCount);
  if (tracing && index < 0) traceStep("not found.\n");
  if (tracing && index >= 0) traceStep("found. i = %d\n", index);
  return index < 0 ? ERROR_NO_MORE_ITEMS : ERROR_SUCCESS;
}

// The index of the first ID of the line that matches, negative for none. A line without an ID
// counts as one empty ID, and that is contained in every other.
int CInf::findId(INFCONTEXT& line, DWORD fieldCount) {
  if (fieldCount < kFirstListField) return 0;
  for (DWORD field = kFirstListField; field <= fieldCount; ++field) {
    const auto id = readId(line, field);
    if (!id) return field == kFirstListField ? 0 : -1;
    if (wantedId.matches(*id)) return static_cast<int>(field - kFirstListField);
  }
  return -1;
}

// What GetField reads, with one call for the usual lengths; good until the next call.
std::optional<std::string_view> CInf::readId(INFCONTEXT& line, DWORD field) {
  constexpr auto kRoom = static_cast<DWORD>(std::tuple_size_v<decltype(idBuffer)>);
  DWORD size = 0;
  if (SetupGetStringFieldA(&line, field, idBuffer.data(), kRoom, &size) != FALSE) {
    return std::string_view(idBuffer.data(), size - 1);
  }
  if (GetField(line, field, longId) != ERROR_SUCCESS) return std::nullopt;
  return longId;
}

}  // namespace tolvanix
