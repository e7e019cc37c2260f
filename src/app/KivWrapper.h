// The application object: owns what a run needs and runs exactly one command. Each operation of
// the commands is defined in the folder of the subsystem that it belongs to.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "app/CLIParser.h"
#include "app/XMLWriter.h"
#include "kivvalid.h"
#include "log/DebugWriter.h"
#include "text/SPUString.h"
#include "winapi/winapi.h"

namespace tolvanix {

struct DeviceRecord;
struct VendorFilter;
class SPXMLDevice;

class KivWrapper {
 public:
  KivWrapper();
  KivWrapper(const KivWrapper&) = delete;
  KivWrapper& operator=(const KivWrapper&) = delete;
  // Gives a held validation document back to its library, then unloads the library.
  virtual ~KivWrapper();

  // The whole run; its status is the exit code. The argument vector must outlive the object. No
  // exception leaves it: what nobody below catches (memory ran out, a validation library that
  // throws) closes the document with kUnspecifiedFailure; before there is a document it is
  // kInitializationFailed.
  int runKiv(std::int32_t argumentCount, char* arguments[]);

  // Accepts the files that the command line names and starts the debug log. 0, or the status of
  // the first check that failed.
  int validateCLIOptionsAndDefaults();

  // Runs the selected command, which writes its element of the result document.
  int takeAction();

  // True in a 32-bit process on 64-bit Windows.
  static bool IsWow64();

  // Says on standard output that the program could not start up: kInitializationFailed.
  static int reportInitializationFailure();

  // The status that reports a DeviceStatus.
  static int mapDeviceStatus(std::int32_t deviceStatus);

  // ---- inventory/ ----

  // -i. 0, 19 or 20.
  int actionInventory();
  // Fills the inventory document. 0, or 19 when the system could not be measured.
  int GetInventory(const char* language);
  // True when the device's vendor is among the entries, so that the inventory leaves it out.
  static bool FilterDeviceInventory(const DeviceRecord& record,
                                    const std::vector<VendorFilter>& entries);

  // ---- update/ ----

  // 0, or 23 to 26. What was loaded before a failure stays until it is unloaded.
  int LoadValidationLibrary();
  // Both are safe when nothing is held.
  void FreeValidationXML();
  void UnloadValidationLibrary();
  // -u.
  int actionUpdateApplicableDevices();
  // Has the library judge the package; holds its document. 0 when it may be executed, 21 or 22.
  int PerformValidation(const char* language, const char* packageFileName);
  int VerifyValidationXML();
  // Installs what the held document lists and writes the execution document. 0, or the status of
  // the first device that failed, or 27 to 29. A null INF name means all INF files.
  int PerformExecution(const char* infFileName, int checkOnly);
  void recordDeviceResult(const SPXMLDevice& device, int messageId);

  // ---- install/ ----

  // -uhid.
  int actionUpdateHardwareID();

 private:
  int runCommand(std::int32_t argumentCount, char* arguments[]);
  int endAfterException();
  int bindValidationLibrary();
  // Traces the text of a failed check's status and returns the status.
  int refuseOptions(int status) const;
  int checkUpdateFiles();
  // Write the failure into the command's element, which is opened unless it is open, and close it.
  void writeCommandFailure(int status);
  void writeInventoryFailure(int status);
  void writeExecutionFailure(int status);

  std::unique_ptr<CLIParser> parser;
  std::unique_ptr<DebugWriter> debugWriter;
  std::unique_ptr<XMLWriter> xmlWriter;
  SPUString inventoryXML;
  const char16_t* inventoryXMLText = nullptr;  // into inventoryXML; null before there is one
  const KivChar* validationXML = nullptr;      // owned by the validation library
  HMODULE validationLibrary = nullptr;
  decltype(&SPValidate) validateEntry = nullptr;
  decltype(&SPFreeValidationXML) freeValidationXMLEntry = nullptr;
  bool rebootRequired = false;  // by a driver that this run installed
};

}  // namespace tolvanix
