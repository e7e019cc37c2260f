#include "install/CDevInfoSet.h"

#include <string>

#include "install/CInf.h"
#include "install/DevHelper.h"
#include "install/ExecCmd.h"
#include "log/DebugWriter.h"
#include "text/Format.h"
#include "winapi/ProcAddress.h"

namespace tolvanix {
namespace {

constexpr char kFindPlace[] = "CDevInfoSet::FindExistingDevice";
constexpr char kHelperFolder[] = "\\tolvanixhelper64";
constexpr char kHelperProgram[] = "\\tolvanixhelper64.exe";
constexpr DWORD kFolderSize = 256;
constexpr DWORD kOutputSize = 4096;
constexpr int kHelperTimeLimitSeconds = 300;

// The helper program's exit codes; all others are failures.
constexpr DWORD kHelperInstalled = 0;
constexpr DWORD kHelperInstalledRestart = 1;

// A device's hardware IDs: `size` bytes of zero-terminated texts, with one more zero after them.
struct HardwareIds {
  LocalMemoryOwner texts;
  DWORD size = 0;
};

// 0 or the platform's error code. The size may change between the calls, so it asks until it fits.
DWORD readHardwareIds(HDEVINFO devices, SP_DEVINFO_DATA& device, HardwareIds& ids) {
  DWORD needed = 0;
  while (SetupDiGetDeviceRegistryPropertyA(devices, &device, SPDRP_HARDWAREID, nullptr,
                                           static_cast<BYTE*>(ids.texts.get()), ids.size,
                                           &needed) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_GEN_FAILURE);
    if (error != ERROR_INSUFFICIENT_BUFFER) return error;
    ids.texts.reset(LocalAlloc(LPTR, SIZE_T{needed} + 1));
    if (!ids.texts) return lastErrorOr(ERROR_NOT_ENOUGH_MEMORY);
    ids.size = needed;
  }
  return ERROR_SUCCESS;
}

bool equalIgnoringCase(const char* left, const char* right) {
  return _mbsicmp(reinterpret_cast<const unsigned char*>(left),
                  reinterpret_cast<const unsigned char*>(right)) == 0;
}

bool hasHardwareId(const HardwareIds& ids, const SPString& wantedId, DWORD deviceIndex) {
  const auto* const texts = static_cast<const char*>(ids.texts.get());
  bool found = false;
  for (std::size_t at = 0; at < ids.size && texts[at] != '\0';) {
    const std::string_view id = texts + at;
    if (equalIgnoringCase(id.data(), wantedId.c_str())) {
      found = true;
      TRACE_STEP("FindExistingDevice: Found Hardware ID = %s. i = %d\n", wantedId.c_str(),
                 static_cast<int>(deviceIndex));
    }
    at += id.size() + 1;
  }
  return found;
}

// The time comes first: a terminal may have too few columns for the names.
std::string progressText(const SPString& hardwareId, const SPString& infPath,
                         const DeviceCount& count) {
  return formatText("%u of %u done, up to %d s: %s from %s", count.done, count.all,
                    kHelperTimeLimitSeconds, hardwareId.c_str() + hardwareId.find('\\') + 1,
                    infPath.c_str() + infPath.rfind('\\') + 1);
}

}  // namespace

CDevInfoSet::CDevInfoSet() {
  deviceInfoData.cbSize = sizeof deviceInfoData;
}

DWORD CDevInfoSet::Create(const CInf& boundInf) {
  inf = &boundInf;
  deviceInfoSet.reset(SetupDiCreateDeviceInfoList(&inf->getClassGuid(), nullptr));
  if (deviceInfoSet) return ERROR_SUCCESS;
  const DWORD error = lastErrorOr(ERROR_GEN_FAILURE);
  PrintError(error, "CDevInfoSet::Create", __LINE__);
  return error;
}

int CDevInfoSet::FindExistingDevice(const char* wantedId) {
  TRACE_STEP("FindExistingDevice: Entered function.\n");
  const DeviceSetOwner devices(
      SetupDiGetClassDevsA(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES));
  if (!devices) return kListUnavailable;
  const bool found = searchDevices(devices.get(), SPString(wantedId));
  SetupDiDestroyDriverInfoList(devices.get(), &deviceInfoData, SPDIT_COMPATDRIVER);
  return found ? kFound : kNotFound;
}

bool CDevInfoSet::searchDevices(HDEVINFO devices, const SPString& wantedId) {
  for (DWORD i = 0; SetupDiEnumDeviceInfo(devices, i, &deviceInfoData) != FALSE; ++i) {
    HardwareIds ids;
    const DWORD error = readHardwareIds(devices, deviceInfoData, ids);
    if (error == ERROR_INVALID_DATA) continue;  // the device has none
    if (error != ERROR_SUCCESS) {
      PrintError(error, kFindPlace, __LINE__);
      return false;
    }
    if (hasHardwareId(ids, wantedId, i)) {
      hardwareId = wantedId;
      return true;
    }
  }
  const DWORD error = GetLastError();
  if (error != ERROR_SUCCESS) PrintError(error, kFindPlace, __LINE__);
  return false;
}

bool CDevInfoSet::IsOSArchitectureWow64() {
  using IsWow64ProcessFunction = BOOL(WINAPI*)(HANDLE, BOOL*);
  const auto isWow64Process =
      procAddress<IsWow64ProcessFunction>(GetModuleHandleA("kernel32"), "IsWow64Process");
  if (isWow64Process == nullptr) return false;
  BOOL answer = FALSE;
  if (isWow64Process(GetCurrentProcess(), &answer) == FALSE) {
    const DWORD error = lastErrorOr(ERROR_GEN_FAILURE);
    PrintError(error, "CDevInfoSet::IsOSArchitectureWow64", __LINE__);
    ExitProcess(error);
  }
  return answer != FALSE;
}

int CDevInfoSet::UpdateDriver(const DeviceCount& count) {
  TRACE_STEP("UpdateDriver: Entered function.\n");
  IsOSArchitectureWow64();  // for its end of the process alone: there is one helper program
  char directory[kFolderSize] = "";
  const DWORD length = GetCurrentDirectoryA(kFolderSize, directory);
  if (length == 0 || length >= kFolderSize) {
    // Without its folder the name would be that of another program.
    PrintError(length == 0 ? lastErrorOr(ERROR_PATH_NOT_FOUND) : ERROR_FILENAME_EXCED_RANGE,
               "CDevInfoSet::UpdateDriver", __LINE__);
    return kExecFailed;
  }
  const std::string helperFolder = std::string(directory) + kHelperFolder;
  TRACE_STEP("UpdateDriver: 64-bit helper program.\n");
  std::string commandLine = helperFolder + kHelperProgram;
  commandLine.append(" \"").append(hardwareId).append("\" \"").append(inf->getPath()).append("\"");

  char output[kOutputSize] = "";
  DWORD exitCode = 0;
  const int result =
      ExecCmd(helperFolder.c_str(), commandLine.c_str(), 0, output, kOutputSize, exitCode,
              kHelperTimeLimitSeconds, progressText(hardwareId, inf->getPath(), count).c_str());
  TRACE_STEP("UpdateDriver: return code (%d) from exec of helper program = %s\n", result,
             commandLine.c_str());
  TRACE_STEP("UpdateDriver: exit code from exec of helper program = %d\n",
             static_cast<int>(exitCode));
  if (result != kExecEnded) return kExecFailed;
  if (exitCode != kHelperInstalled && exitCode != kHelperInstalledRestart) {
    return static_cast<int>(exitCode);
  }
  rebootRequired = exitCode;
  return 0;
}

}  // namespace tolvanix
