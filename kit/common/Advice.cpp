#include "common/Advice.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "app/Status.h"
#include "install/DeviceStatus.h"

namespace tolvanix::kit {

namespace {

// By their numbers.
constexpr Advice kExitCodes[] = {
    {kSuccess, "all was done as asked", "Nothing."},
    {kInitializationFailed, "the program could not start up",
     "Memory ran out at the very start. Free memory and run the program again."},
    {kNoArguments, "the command line is empty", "Give a command: -i, -u or -uhid."},
    {kInvalidArgument, "the command line has an unknown argument",
     "Compare it with what tolvanix -h prints. The debug level is written -d=4, and a hardware ID "
     "needs quotes around it because of its &."},
    {kNoCommand, "the command line has no command", "Give a command: -i, -u or -uhid."},
    {kMultipleCommands, "the command line has more than one command",
     "Give one of -i, -u and -uhid, once."},
    {kInvalidDebugLevel, "the debug level is not one of 0 to 4", "Write it as -d=4."},
    {kMissingOutputFileName, "-o has no file name", "Give the name of the document after -o."},
    {kMissingDebugFileName, "-e has no file name", "Give the name of the trace file after -e."},
    {kMissingPackageFileName, "-p has no file name",
     "Give the name of the package description after -p, or leave -p out for package.xml."},
    {kMissingInfFileName, "-n has no file name",
     "Give the name of an INF file after -n, or leave -n out for all INF files."},
    {kHardwareIdRequired, "-uhid came without -w", "Give the hardware ID with -w, in quotes."},
    {kMissingHardwareId, "-w has no hardware ID",
     "Give the hardware ID after -w, in quotes because of its &."},
    {kOutputFileUnusable, "the -o file cannot be opened for appending",
     "Its folder must exist, and the user must be allowed to write there. The document went to "
     "standard output."},
    {kDebugFileUnusable, "the -e file cannot be opened for appending",
     "Its folder must exist, the user must be allowed to write there, and the name may have 255 "
     "characters at most."},
    {kInfFileUnreadable, "the INF file named with -n cannot be read",
     "Give the name of a file that is in the program's folder."},
    {kPackageFileUnreadable, "the package description cannot be read",
     "Put package.xml beside the program, or name another file there with -p."},
    {kHelperNotFound, "the helper program was not found",
     "Put tolvanixhelper64.exe into the folder tolvanixhelper64 beside the program."},
    {kUnspecifiedFailure, "an unexpected failure ended the run",
     "Memory ran out, or the validation library threw an exception; the last step in the trace "
     "shows where. If it happens again with enough memory, ask the author of the package."},
    {kInventoryFailed, "the inventory could not be taken",
     "Memory ran out, or the system did not say what version it is. Run the program again with "
     "-i; if that fails too, look at the last lines of its trace."},
    {kOperatingSystemNotStripped, "the inventory is damaged in itself",
     "A device's name broke the document. Look for it in the trace, at \"Inventory XML is\"."},
    {kValidationFailed, "the package is refused by its validation library",
     "Look at the library's findings: those of type qualification or hard refuse the package, and "
     "their messages say why. Without a finding, the package description could not be read."},
    {kValidationReturnedNull, "the validation library returned no document",
     "Ask the author of the package: its validation library and package.xml do not go together."},
    {kValidationLibraryNotFound, "kivvalid.dll was not found",
     "Unpack the whole package: kivvalid.dll belongs beside the program."},
    {kValidationLibraryNotLoaded, "kivvalid.dll cannot be loaded",
     "It must be a 64-bit library for this system, and the libraries that it needs must be there. "
     "Unpack the package again."},
    {kValidateEntryNotFound, "kivvalid.dll has no function SPValidate",
     "It is not a validation library, or a damaged one. Unpack the package again."},
    {kFreeValidationEntryNotFound, "kivvalid.dll has no function SPFreeValidationXML",
     "It is not a validation library, or a damaged one. Unpack the package again."},
    {kUpdateFailed, "the update failed in a way that has no code of its own",
     "Most likely memory ran out. Free memory and run the update again."},
    {kHwIDListNotCreated, "memory ran out before the first device",
     "Restart the computer and run the update again."},
    {kHwIDNodeNotAdded, "memory ran out between two devices",
     "Restart the computer and run the update again: what is installed already does no harm."},
    {kNullHardwareId, "the installation was given no hardware ID",
     "No run of this program ends like this; check which program it was."},
    {kNamedInfNotFound, "the INF file named with -n was not found",
     "Give the name of a file that is in the program's folder."},
    {kNoInfFiles, "there is no INF file in the program's folder",
     "Unpack the whole package: its INF files belong beside the program."},
    {kNoMatchingDevice, "a device of the validation document is not on this computer",
     "No run of this program ends like this; check which program it was."},
    {kCheckedIdFound, "check only: an INF file lists the ID, and a device with it is present",
     "Nothing: this is the success of -c. Run it again without -c to install the driver."},
    {kCheckedIdNotFound, "check only: the hardware ID was not found in an INF file",
     "The package has no driver for this device, or the file named with -n is the wrong one."},
    {kIdInNoInf, "the last INF file that was tried does not list the hardware ID",
     "If no INF file lists it, the package has no driver for this device. If an earlier one does, "
     "what happened to that one is the reason."},
    {kInfNotOpened, "the last INF file that was tried could not be opened",
     "Check that it is a complete INF file with a class that this system knows, and that the user "
     "may read it."},
    {kNullHardwareIdForInstall, "an INF file was searched without a hardware ID",
     "No run of this program ends like this; check which program it was."},
    {kHelperFailed, "the helper program failed",
     "Its exit code is the reason; the author of the package knows the codes. If it did not start, "
     "tolvanixhelper64\\tolvanixhelper64.exe is missing beside the program or cannot be run."},
    {kNoExistingDevice, "no present device has the hardware ID",
     "An INF file lists it, but the device is missing, or the ID is only a part of the device's. "
     "Give one of the device's hardware IDs in full; -i lists the devices."},
};
static_assert(std::size(kExitCodes) == kStatusCount);

constexpr Advice kNoExitCode = {
    -1, "this is no exit code of the program",
    "It was ended from outside, it crashed, or it was not started at all."};

constexpr Advice kDeviceStatuses[] = {
    {kDeviceNotOnSystem, "the device is not on this computer",
     "No run of this program ends like this; check which program it was."},
    {kDeviceNoInfFiles, "there is no INF file",
     "Unpack the whole package: its INF files belong beside the program."},
    {kDeviceNamedInfNotFound, "the INF file named with -n was not found",
     "Give the name of a file that is in the program's folder."},
    {kDeviceNullHardwareId, "there was no hardware ID",
     "No run of this program ends like this; check which program it was."},
    {kDeviceRestartRequired, "the driver is installed, and the computer must be restarted",
     "Restart the computer."},
    {kDeviceOutOfMemory, "memory ran out", "Free memory and run the program again."},
    {kDeviceInstalled, "the driver is installed", "Nothing."},
    {kDeviceInstalledRestart, "the driver is installed, and the computer must be restarted",
     "Restart the computer."},
    {kDeviceCheckFound, "check only: an INF file lists the ID, and a device with it is present",
     "Nothing: run it again without -c to install the driver."},
    {kDeviceCheckNotFound, "check only: the last INF file that was tried does not list the ID",
     "If no INF file lists it, the package has no driver for this device."},
    {kDeviceIdInNoInf, "the last INF file that was tried does not list the ID",
     "If no INF file lists it, the package has no driver for this device. If an earlier one does, "
     "what happened to that one is the reason."},
    {kDeviceInfNotOpened, "the last INF file that was tried could not be opened",
     "Check that it is a complete INF file with a class that this system knows, and that the user "
     "may read it."},
    {kDeviceNoIdForInstall, "there was no hardware ID to look for",
     "No run of this program ends like this; check which program it was."},
    {kDeviceHelperFailed, "the helper program failed",
     "Its exit code is the reason; the author of the package knows the codes. If it did not start, "
     "tolvanixhelper64\\tolvanixhelper64.exe is missing beside the program or cannot be run."},
    {kDeviceNotPresent, "no present device has the hardware ID",
     "The device is missing, or the ID is only a part of the device's. Give one of its hardware "
     "IDs in full; -i lists the devices."},
};

constexpr Advice kNoDeviceStatus = {0, "a status that the program does not have",
                                    "Check which program made the trace."};

}  // namespace

const Advice& adviceForExitCode(int code) {
  if (code < 0 || code >= kStatusCount) return kNoExitCode;
  return kExitCodes[static_cast<std::size_t>(code)];
}

const Advice& adviceForDeviceStatus(int status) {
  const auto* const found =
      std::find_if(std::begin(kDeviceStatuses), std::end(kDeviceStatuses),
                   [status](const Advice& advice) { return advice.number == status; });
  return found != std::end(kDeviceStatuses) ? *found : kNoDeviceStatus;
}

bool isSuccess(int code) {
  return code == kSuccess || code == kCheckedIdFound;
}

}  // namespace tolvanix::kit
