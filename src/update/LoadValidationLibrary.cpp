// The package's validation library: loading it, giving its document back, unloading it.
#include "app/KivWrapper.h"
#include "app/Status.h"
#include "winapi/ProcAddress.h"

namespace tolvanix {

namespace {
constexpr char kLibraryName[] = "kivvalid.dll";
}

int KivWrapper::LoadValidationLibrary() {
  TRACE_STEP("LoadValidationLibrary: Loading the validation DLL and getting proc addresses.\n");
  const int status = bindValidationLibrary();
  if (status != kSuccess) {
    TRACE_ERROR("LoadValidationLibrary: %s\n", xmlWriter->getMessage(status));
  }
  return status;
}

int KivWrapper::bindValidationLibrary() {
  if (!CLIParser::canReadBinary(kLibraryName)) return kValidationLibraryNotFound;
  validationLibrary = LoadLibraryA(kLibraryName);
  if (validationLibrary == nullptr) return kValidationLibraryNotLoaded;
  validateEntry = procAddress<decltype(&SPValidate)>(validationLibrary, "SPValidate");
  if (validateEntry == nullptr) return kValidateEntryNotFound;
  freeValidationXMLEntry =
      procAddress<decltype(&SPFreeValidationXML)>(validationLibrary, "SPFreeValidationXML");
  if (freeValidationXMLEntry == nullptr) return kFreeValidationEntryNotFound;
  return kSuccess;
}

void KivWrapper::FreeValidationXML() {
  if (validationXML == nullptr || freeValidationXMLEntry == nullptr) return;
  TRACE_STEP("FreeValidationXML: Freeing validation XML.\n");
  try {
    freeValidationXMLEntry(validationXML);
  } catch (...) {
    // The result document is closed: its status cannot change any more.
  }
  validationXML = nullptr;
}

void KivWrapper::UnloadValidationLibrary() {
  if (validationLibrary != nullptr) {
    TRACE_STEP("UnloadValidationLibrary: Unloading the validation DLL.\n");
    FreeLibrary(validationLibrary);
    validationLibrary = nullptr;
  }
  validateEntry = nullptr;
  freeValidationXMLEntry = nullptr;
}

}  // namespace tolvanix
