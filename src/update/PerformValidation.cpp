// The validation of the package against the computer's inventory.
#include <string_view>

#include "app/KivWrapper.h"
#include "app/SPException.h"
#include "app/Status.h"
#include "text/SPString.h"
#include "xml/SPXMLObject.h"
#include "xml/SPXMLValidation.h"

namespace tolvanix {

namespace {

// The weightiest finding so far, by the names that the traces give them.
enum ValidationStatus : int {
  kNoFinding = 0,
  kSoftError = 3,
  kHardError = 4,
  kQualificationError = 5,
  kUpgradeInfo = -1004,
};

void traceFinding(const char* name) {
  TRACE_STEP("VerifyValidationXML: internal valStatus = %s\n", name);
}

// A hard finding replaces a soft one, a soft one an informal one.
int weigh(const SPUString& type, int status) {
  if (type == SPUString(u"qualification")) {
    traceFinding("QUAL_HARD_ERROR");
    return kQualificationError;
  }
  if (type == SPUString(u"hard")) {
    traceFinding("DEP_HARD_ERROR");
    return kHardError;
  }
  if (type == SPUString(u"soft") && status != kHardError) {
    traceFinding("DEP_SOFT_ERROR");
    return kSoftError;
  }
  if (type == SPUString(u"info") && status != kHardError && status != kSoftError) {
    traceFinding("UPGRADE_INFO");
    return kUpgradeInfo;
  }
  return status;
}

void tracePackage(const SPXMLObject& package) {
  const SPUString description = SPXMLObject::getElementCData(
      package.getElementText(SPUString(u"Name")), SPUString(u"Display"));
  TRACE_STEP("PerformValidation: sPkgDescription.data() = %s\n",
             SPString(description.c_str()).c_str());
  TRACE_STEP("PerformValidation: package XML length = %d\n",
             static_cast<int>(package.getXML().size()));
}

}  // namespace

int KivWrapper::PerformValidation(const char* /*language*/, const char* packageFileName) {
  TRACE_STEP("PerformValidation: Entered function.\n");
  try {
    SPXMLObject package;
    package.loadXMLFile(SPString(packageFileName));
    const SPUString& text = package.getXML();
    if (debugWriter->getDebugTarget() != kTargetNone) tracePackage(package);
    // Without its first character, which is the byte-order mark of a UTF-16 file.
    debugWriter->dumpWideXML(text.empty() ? text.c_str() : text.c_str() + 1, "Package");
    TRACE_STEP("PerformValidation: Calling SPValidate function.\n");
    validationXML = validateEntry(text.c_str(), inventoryXMLText, nullptr, nullptr);
    const int status = VerifyValidationXML();
    TRACE_STEP("PerformValidation: status from VerifyValidationXML = %d\n", status);
    return status;
  } catch (const SPException& e) {
    TRACE_STEP("PerformValidation: Caught exception. e.getErrorNum() = %d\n",
               static_cast<int>(e.getErrorNum()));
    return kValidationFailed;
  }
}

int KivWrapper::VerifyValidationXML() {
  TRACE_STEP("VerifyValidationXML: Entered function.\n");
  if (validationXML == nullptr) return kValidationReturnedNull;
  if (debugWriter->getDebugTarget() != kTargetNone) {
    TRACE_STEP("VerifyValidationXML: validation XML length = %d\n",
               static_cast<int>(std::u16string_view(validationXML).size()));
  }
  debugWriter->dumpWideXML(validationXML, "Validation");
  SPXMLObject document;
  document.setXML(SPUString(validationXML));
  TRACE_STEP("VerifyValidationXML: Checking validation XML.\n");

  int status = kNoFinding;
  for (const SPUString& element : document.getElements(SPUString(u"Validation"))) {
    status = weigh(SPXMLValidation(element).getType(), status);
    if (status == kQualificationError) break;
  }
  return status == kQualificationError || status == kHardError ? kValidationFailed : kSuccess;
}

}  // namespace tolvanix
