// The status numbers of a run: what the result document, the exit code and every operation's
// result speak in, and the texts that belong to them.
#pragma once

#include <array>

namespace tolvanix {

enum Status : int {
  kSuccess = 0,
  kInitializationFailed = 1,
  // The command line.
  kNoArguments = 2,
  kInvalidArgument = 3,
  kNoCommand = 4,
  kMultipleCommands = 5,
  kInvalidDebugLevel = 6,
  kMissingOutputFileName = 7,
  kMissingDebugFileName = 8,
  kMissingPackageFileName = 9,
  kMissingInfFileName = 10,
  kHardwareIdRequired = 11,
  kMissingHardwareId = 12,
  // The files that it names.
  kOutputFileUnusable = 13,
  kDebugFileUnusable = 14,
  kInfFileUnreadable = 15,
  kPackageFileUnreadable = 16,
  kHelperNotFound = 17,
  kUnspecifiedFailure = 18,  // an exception that no operation catches ended the run
  // Inventory and validation.
  kInventoryFailed = 19,
  kOperatingSystemNotStripped = 20,
  kValidationFailed = 21,
  kValidationReturnedNull = 22,
  kValidationLibraryNotFound = 23,
  kValidationLibraryNotLoaded = 24,
  kValidateEntryNotFound = 25,
  kFreeValidationEntryNotFound = 26,
  // Execution and driver installation.
  kUpdateFailed = 27,
  kHwIDListNotCreated = 28,
  kHwIDNodeNotAdded = 29,
  kNullHardwareId = 30,
  kNamedInfNotFound = 31,
  kNoInfFiles = 32,
  kNoMatchingDevice = 33,
  kCheckedIdFound = 34,
  kCheckedIdNotFound = 35,
  kIdInNoInf = 36,
  kInfNotOpened = 37,
  kNullHardwareIdForInstall = 38,
  kHelperFailed = 39,
  kNoExistingDevice = 40,
};

constexpr int kStatusCount = 41;

// The text of each status, by its number. The texts hold no markup: they go into the result
// document as they are.
extern const std::array<const char*, kStatusCount> kStatusTexts;

}  // namespace tolvanix
