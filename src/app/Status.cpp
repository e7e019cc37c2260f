#include "app/Status.h"

#include <algorithm>
#include <cstddef>

namespace tolvanix {

namespace {

struct StatusText {
  Status status;
  const char* text;
};

constexpr StatusText kTable[] = {
    {kSuccess, "Operation successful."},
    {kInitializationFailed, "Operation failed. Failed while trying to initialize objects."},
    {kNoArguments,
     "Command line error: No command line arguments were specified. "
     "Run the program with \"-h\" to see program help."},
    {kInvalidArgument,
     "Command line error: An invalid command line argument was specified. "
     "Run the program with \"-h\" to see program help."},
    {kNoCommand,
     "Command line error: No command was specified on the command line. "
     "Run the program with \"-h\" to see program help."},
    {kMultipleCommands,
     "Command line error: Multiple or duplicate commands have been specified. "
     "Run the program with \"-h\" to see program help."},
    {kInvalidDebugLevel,
     "Command line error: An invalid debug level was specified with the \"-d\" argument. "
     "Run the program with \"-h\" to see program help."},
    {kMissingOutputFileName,
     "Command line error: The \"-o\" argument is missing an output filename string. "
     "Run the program with \"-h\" to see program help."},
    {kMissingDebugFileName,
     "Command line error: The \"-e\" argument is missing a debug filename string. "
     "Run the program with \"-h\" to see program help."},
    {kMissingPackageFileName,
     "Command line error: The \"-p\" argument is missing a package XML filename string. "
     "Run the program with \"-h\" to see program help."},
    {kMissingInfFileName,
     "Command line error: The \"-n\" argument is missing an INF filename string. "
     "Run the program with \"-h\" to see program help."},
    {kHardwareIdRequired,
     "Command line error: A \"-w\" argument is missing. The \"-uhid\" command requires it. "
     "Run the program with \"-h\" to see program help."},
    {kMissingHardwareId,
     "Command line error: The \"-w\" argument is missing a hardware ID string. "
     "Run the program with \"-h\" to see program help."},
    {kOutputFileUnusable,
     "Command line error: Can not open the specified output file for appending."},
    {kDebugFileUnusable,
     "Command line error: Can not open the specified debug file for appending."},
    {kInfFileUnreadable,
     "Command line error: Either can not find the specified INF file, "
     "or can not open it for reading."},
    {kPackageFileUnreadable,
     "Either can not find the package XML file, or can not open it for reading."},
    {kHelperNotFound, "Can not find the tolvanixhelper64.exe file."},
    {kUnspecifiedFailure, "Operation failed. An unspecified error occurred."},
    {kInventoryFailed,
     "Operation failed. An unspecified error occurred while trying to get inventory."},
    {kOperatingSystemNotStripped,
     "Operation failed. Failed while trying to strip operating system element "
     "from internal inventory XML string."},
    {kValidationFailed,
     "Operation failed. An unspecified error occurred while performing validation."},
    {kValidationReturnedNull,
     "Operation failed. A null pointer was returned while performing validation."},
    {kValidationLibraryNotFound,
     "The update failed because the program could not find the following DLL file: kivvalid.dll"},
    {kValidationLibraryNotLoaded,
     "The update failed because the program could not load the following DLL file: kivvalid.dll"},
    {kValidateEntryNotFound,
     "The update failed because the program could not get the address of the following function: "
     "SPValidate"},
    {kFreeValidationEntryNotFound,
     "The update failed because the program could not get the address of the following function: "
     "SPFreeValidationXML"},
    {kUpdateFailed, "Operation failed. An unspecified error occurred while performing update."},
    {kHwIDListNotCreated,
     "Operation failed. Failed while trying to create a HwIDList object. "
     "Reboot the system and retry the update."},
    {kHwIDNodeNotAdded,
     "Operation failed. Failed while trying to add a HwIDNode object to a list. "
     "Reboot the system and retry the update."},
    {kNullHardwareId,
     "Operation failed. A null Hardware ID string was passed into the DriverUpdate function."},
    {kNamedInfNotFound, "Operation failed. Specified INF file could not be found."},
    {kNoInfFiles, "Operation failed. No INF files could be found."},
    {kNoMatchingDevice,
     "Operation failed. Failed to find a matching device on the system "
     "for a device in the validation list."},
    {kCheckedIdFound, "Hardware ID check was performed. The hardware ID was found in an INF file."},
    {kCheckedIdNotFound,
     "Hardware ID check was performed. The hardware ID was not found in an INF file."},
    {kIdInNoInf,
     "Operation failed. Hardware ID not found in any of the .INF files. Contact Tarvek Support."},
    {kInfNotOpened, "Operation failed. Unable to open any .INF file."},
    {kNullHardwareIdForInstall,
     "Operation failed. Null hardware id specified for installation routine."},
    {kHelperFailed, "Operation failed.  TolvanixHelper failed to complete update."},
    {kNoExistingDevice,
     "Operation failed.  Cannot find existing device for a discovered Hardware id."},
};

constexpr std::array<const char*, kStatusCount> textsByNumber() {
  std::array<const char*, kStatusCount> texts{};
  for (const StatusText& row : kTable) texts.at(static_cast<std::size_t>(row.status)) = row.text;
  return texts;
}

constexpr bool everyStatusHasItsText() {
  const auto texts = textsByNumber();
  return std::size(kTable) == kStatusCount &&
         std::none_of(texts.begin(), texts.end(), [](const char* text) { return text == nullptr; });
}
static_assert(everyStatusHasItsText());

}  // namespace

constinit const std::array<const char*, kStatusCount> kStatusTexts = textsByNumber();

}  // namespace tolvanix
