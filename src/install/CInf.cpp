#include "install/CInf.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "install/DevHelper.h"
#include "log/DebugWriter.h"

namespace tolvanix {

namespace {

constexpr char kOpenPlace[] = "CInf::Open";
constexpr DWORD kClassNameSize = 64;
constexpr unsigned kFirstListField = 2;  // of the decorations, and of the IDs
constexpr unsigned kLastDecorationField = 99;

// The last error of a call that failed, `fallback` where the system set none: 0 would be success.
DWORD lastErrorOr(DWORD fallback) {
  const DWORD code = GetLastError();
  return code != ERROR_SUCCESS ? code : fallback;
}

bool isZero(const GUID& guid) {
  constexpr GUID kZero{};
  return std::memcmp(&guid, &kZero, sizeof guid) == 0;
}

void toUpperCase(std::string& text) {
  for (char& c : text) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

// Whether one of the texts contains the other.
bool eitherContains(std::string_view left, std::string_view right) {
  if (left.size() < right.size()) std::swap(left, right);
  return left.find(right) != std::string_view::npos;
}

}  // namespace

DWORD CInf::Open(const std::string& fileName, int flag) {
  std::string name = fileName;
  if (name.starts_with('"')) name = name.substr(1, std::max<std::size_t>(name.size(), 2) - 2);
  if (flag == 0 && name.find('\\') == std::string::npos) path = ".\\";
  path.append(name);

  const HINF opened = SetupOpenInfFileA(path.c_str(), nullptr, INF_STYLE_WIN4, nullptr);
  if (opened == INVALID_HANDLE_VALUE) {
    const DWORD error = lastErrorOr(ERROR_INVALID_DATA);
    PrintError(error, kOpenPlace, __LINE__);
    return error;
  }
  infHandle.reset(opened);
  return readClass();
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
  readDescription();
  return result;
}

// ERROR_NO_MORE_ITEMS when no model of the manufacturer carries the ID.
DWORD CInf::searchManufacturer(INFCONTEXT& line) {
  std::string section;
  DWORD error = GetField(line, 0, manufacturer);
  if (error == ERROR_SUCCESS) error = GetField(line, 1, section);
  if (error != ERROR_SUCCESS) return error;
  traceStep("EnumManufacturers->EnumDevices for mfg 1, %s:%s.\n", manufacturer.c_str(),
            section.c_str());
  if (searchModels(section) == ERROR_SUCCESS) return ERROR_SUCCESS;

  std::string decoration;
  for (unsigned field = kFirstListField;
       field <= kLastDecorationField && GetField(line, field, decoration) == ERROR_SUCCESS;
       ++field) {
    decoration.insert(0, section + ".");
    traceStep("EnumManufacturers->EnumDevices for mfg %u, %s:%s.\n", field, manufacturer.c_str(),
              decoration.c_str());
    if (searchModels(decoration) == ERROR_SUCCESS) return ERROR_SUCCESS;
  }
  return ERROR_NO_MORE_ITEMS;
}

DWORD CInf::EnumDevices(const std::string& section) {
  const DWORD result = searchModels(section);
  readDescription();
  return result;
}

DWORD CInf::searchModels(const std::string& section) {
  INFCONTEXT line{};
  if (SetupFindFirstLineA(infHandle.get(), section.c_str(), nullptr, &line) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_LINE_NOT_FOUND);
    traceStep("EnumDevices for model, %s: no devices found.\n", section.c_str());
    return error;
  }
  wantedId = hardwareId;
  toUpperCase(wantedId);
  do {
    const DWORD error = readModel(line);
    if (error != ERROR_SUCCESS) return error;
    if (searchIds(line)) return ERROR_SUCCESS;
  } while (SetupFindNextLine(&line, &line) != FALSE);
  return ERROR_NO_MORE_ITEMS;
}

// The texts of a model line are seen in the trace; else only the description of the last line is
// wanted in the end, and the others need not be read.
DWORD CInf::readModel(INFCONTEXT& line) {
  if (!debugLevelAtLeast(kTraceSteps)) {
    const DWORD error = FindField(line, 0);
    if (error != ERROR_SUCCESS) return error;
    unreadModel = line;
    return FindField(line, 1);
  }
  std::string text;
  DWORD error = GetField(line, 0, text);
  if (error != ERROR_SUCCESS) return error;
  description = text;
  error = GetField(line, 1, text);
  if (error != ERROR_SUCCESS) return error;
  traceStep("EnumDevices for model, %s:%s\n", description.c_str(), text.c_str());
  return ERROR_SUCCESS;
}

void CInf::readDescription() {
  if (unreadModel.Inf == nullptr) return;
  GetField(unreadModel, 0, description);
  unreadModel = INFCONTEXT{};
}

bool CInf::searchIds(INFCONTEXT& line) {
  const DWORD fieldCount = SetupGetFieldCount(&line);
  std::size_t count = 0;
  for (DWORD field = kFirstListField; field <= fieldCount; ++field) {
    if (count == lineIds.size()) lineIds.emplace_back();
    if (GetField(line, field, lineIds[count]) != ERROR_SUCCESS) break;
    ++count;
  }
  if (count == 0) {
    // A line without an ID counts as one empty ID.
    lineIds.resize(std::max<std::size_t>(lineIds.size(), 1));
    lineIds[count++].clear();
  }
  traceStep("Search for HwID %s: ", hardwareId.c_str());
  for (std::size_t i = 0; i < count; ++i) {
    std::string& id = lineIds[i];
    id.resize(std::min(id.find("&REV"), id.size()));
    toUpperCase(id);
    if (eitherContains(id, wantedId)) {
      traceStep("found. i = %d\n", static_cast<int>(i));
      return true;
    }
  }
  traceStep("not found.\n");
  return false;
}

}  // namespace tolvanix
