// The command -u: installs the drivers that a package brings for this computer.
#include "app/KivWrapper.h"
#include "app/Status.h"

namespace tolvanix {

int KivWrapper::actionUpdateApplicableDevices() {
  TRACE_STEP("actionUpdateApplicableDevices: Entered function.\n");
  int status = GetInventory("en");
  TRACE_STEP("actionUpdateApplicableDevices: status from GetInventory() = %d\n", status);
  if (status == kSuccess) {
    status = PerformValidation("en", parser->getPackageFileName());
    TRACE_STEP("actionUpdateApplicableDevices: status from PerformValidation() = %d\n", status);
  }
  if (status != kSuccess) {
    writeExecutionFailure(status);
    return status;
  }
  status = PerformExecution(parser->getINFFileName(), parser->getCheckOnly());
  TRACE_STEP("actionUpdateApplicableDevices: status from PerformExecution = %d\n", status);
  return status;
}

}  // namespace tolvanix
