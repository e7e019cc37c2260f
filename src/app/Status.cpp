#include "app/Status.h"

namespace tolvanix {

const std::array<const char*, kStatusCount> kStatusTexts = {
    "Operation successful.",
    "Operation failed. Failed while trying to initialize objects.",
    "Command line error: No command line arguments were specified. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: An invalid command line argument was specified. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: No command was specified on the command line. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: Multiple or duplicate commands have been specified. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: An invalid debug level was specified with the \"-d\" argument. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: The \"-o\" argument is missing an output filename string. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: The \"-e\" argument is missing a debug filename string. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: The \"-p\" argument is missing a package XML filename string. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: The \"-n\" argument is missing an INF filename string. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: A \"-w\" argument is missing. The \"-uhid\" command requires it. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: The \"-w\" argument is missing a hardware ID string. "
    "Run the program with \"-h\" to see program help.",
    "Command line error: Can not open the specified output file for appending.",
    "Command line error: Can not open the specified debug file for appending.",
    "Command line error: Either can not find the specified INF file, "
    "or can not open it for reading.",
    "Either can not find the package XML file, or can not open it for reading.",
    "Can not find the tolvanixhelper64.exe file.",
    "Operation failed. An unspecified error occurred.",
    "Operation failed. An unspecified error occurred while trying to get inventory.",
    "Operation failed. Failed while trying to strip operating system element "
    "from internal inventory XML string.",
    "Operation failed. An unspecified error occurred while performing validation.",
    "Operation failed. A null pointer was returned while performing validation.",
    "The update failed because the program could not find the following DLL file: kivvalid.dll",
    "The update failed because the program could not load the following DLL file: kivvalid.dll",
    "The update failed because the program could not get the address of the following function: "
    "SPValidate",
    "The update failed because the program could not get the address of the following function: "
    "SPFreeValidationXML",
    "Operation failed. An unspecified error occurred while performing update.",
    "Operation failed. Failed while trying to create a HwIDList object. "
    "Reboot the system and retry the update.",
    "Operation failed. Failed while trying to add a HwIDNode object to a list. "
    "Reboot the system and retry the update.",
    "Operation failed. A null Hardware ID string was passed into the DriverUpdate function.",
    "Operation failed. Specified INF file could not be found.",
    "Operation failed. No INF files could be found.",
    "Operation failed. Failed to find a matching device on the system "
    "for a device in the validation list.",
    "Hardware ID check was performed. The hardware ID was found in an INF file.",
    "Hardware ID check was performed. The hardware ID was not found in an INF file.",
    "Operation failed. Hardware ID not found in any of the .INF files. Contact Tarvek Support.",
    "Operation failed. Unable to open any .INF file.",
    "Operation failed. Null hardware id specified for installation routine.",
    "Operation failed.  TolvanixHelper failed to complete update.",
    "Operation failed.  Cannot find existing device for a discovered Hardware id.",
};

}  // namespace tolvanix
