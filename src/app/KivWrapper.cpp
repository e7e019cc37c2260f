#include "app/KivWrapper.h"

#include <cstdio>
#include <new>

#include "app/Status.h"
#include "winapi/ProcAddress.h"

namespace tolvanix {

KivWrapper::KivWrapper()
    : parser(new (std::nothrow) CLIParser),
      debugWriter(new (std::nothrow) DebugWriter),
      xmlWriter(new (std::nothrow) XMLWriter) {}

KivWrapper::~KivWrapper() {
  FreeValidationXML();
  UnloadValidationLibrary();
  parser.reset();  // in the order of their making, and the document after them
  debugWriter.reset();
  xmlWriter.reset();
}

int KivWrapper::runKiv(std::int32_t argumentCount, char* arguments[]) {
  try {
    return runCommand(argumentCount, arguments);
  } catch (...) {
    return endAfterException();
  }
}

int KivWrapper::runCommand(std::int32_t argumentCount, char* arguments[]) {
  if (!parser || !debugWriter || !xmlWriter) return reportInitializationFailure();

  const std::int32_t parsed = parser->parse(argumentCount, arguments);
  if (parsed == kHelpPrinted || parsed == kVersionPrinted) return kSuccess;
  if (parsed != kSuccess) {
    xmlWriter->writeXMLDeclaration();
    xmlWriter->writeFailureStatus(parsed);
    return parsed;
  }

  const int validated = validateCLIOptionsAndDefaults();
  xmlWriter->writeXMLDeclaration();
  if (validated == kSuccess) {
    const int status = takeAction();
    TRACE_STEP("runKiv: status from takeAction() = %d\n", status);
    return status;
  }
  writeCommandFailure(validated);
  return validated;
}

int KivWrapper::endAfterException() {
  if (!xmlWriter->isDocumentStarted()) return reportInitializationFailure();
  writeCommandFailure(kUnspecifiedFailure);
  return kUnspecifiedFailure;
}

int KivWrapper::reportInitializationFailure() {
  std::fputs("Error: Failed while trying to initialize objects.", stdout);
  return kInitializationFailed;
}

int KivWrapper::validateCLIOptionsAndDefaults() {
  const char* const outputFile = parser->getOutputFileName();
  if (outputFile != nullptr) {
    if (!CLIParser::canAppendText(outputFile)) return kOutputFileUnusable;
    xmlWriter->setOutputFileName(outputFile);
  }

  const char* const debugFile = parser->getDebugFileName();
  if (parser->getDebugLevel() > 0 && parser->getDebugTarget() == kTargetFile &&
      !(DebugWriter::canHold(debugFile) && CLIParser::canAppendText(debugFile))) {
    return kDebugFileUnusable;
  }
  debugWriter->initialize(parser->getDebugLevel(), parser->getDebugTarget(), debugFile);
  TRACE_STEP("***************************************************\n");
  TRACE_STEP("**** tolvanix: Debugging has been initialized. ****\n");
  TRACE_STEP("***************************************************\n");

  return parser->getCommand() == kCommandInventory ? kSuccess : checkUpdateFiles();
}

// The checks that only the commands -u and -uhid need.
int KivWrapper::checkUpdateFiles() {
  const char* const infFile = parser->getINFFileName();
  if (infFile != nullptr && !CLIParser::canReadText(infFile)) {
    return refuseOptions(kInfFileUnreadable);
  }
  if (IsWow64()) {
    constexpr char kHelper[] = ".\\tolvanixhelper64\\tolvanixhelper64.exe";
    TRACE_ERROR("CLIValidate 64-bit helper program: %s.\n", kHelper);
    if (!CLIParser::canReadBinary(kHelper)) return refuseOptions(kHelperNotFound);
  }
  if (parser->getCommand() == kCommandUpdate) {
    if (!CLIParser::canReadText(parser->getPackageFileName())) {
      return refuseOptions(kPackageFileUnreadable);
    }
    return LoadValidationLibrary();
  }
  if (parser->getHardwareID() == nullptr) return refuseOptions(kHardwareIdRequired);
  return kSuccess;
}

int KivWrapper::refuseOptions(int status) const {
  TRACE_ERROR("validateCLIOptionsAndDefaults: %s\n", xmlWriter->getMessage(status));
  return status;
}

int KivWrapper::takeAction() {
  switch (parser->getCommand()) {
    case kCommandInventory:
      return actionInventory();
    case kCommandUpdate:
      return actionUpdateApplicableDevices();
    case kCommandUpdateHardwareId:
      return actionUpdateHardwareID();
    default:
      return kSuccess;
  }
}

bool KivWrapper::IsWow64() {
  using IsWow64ProcessFunction = BOOL(WINAPI*)(HANDLE, BOOL*);
  const auto isWow64Process =
      procAddress<IsWow64ProcessFunction>(GetModuleHandleA("kernel32"), "IsWow64Process");
  BOOL answer = FALSE;
  if (isWow64Process != nullptr) isWow64Process(GetCurrentProcess(), &answer);
  if (answer == FALSE) return false;
  TRACE_STEP("IsWow64: 32-bit app running under WOW64\n");
  return true;
}

void KivWrapper::writeCommandFailure(int status) {
  if (parser->getCommand() == kCommandInventory) {
    writeInventoryFailure(status);
  } else {
    writeExecutionFailure(status);
  }
}

void KivWrapper::writeInventoryFailure(int status) {
  xmlWriter->writeInventoryStart();
  xmlWriter->writeFailureStatus(status);
  xmlWriter->writeInventoryEnd();
}

void KivWrapper::writeExecutionFailure(int status) {
  if (!xmlWriter->isElementOpen()) xmlWriter->writeExecutionStart();
  xmlWriter->writeFailureStatus(status);
  xmlWriter->writeExecutionEnd(rebootRequired);
}

}  // namespace tolvanix
