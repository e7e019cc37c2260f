#include "app/CLIParser.h"

#include <cstdio>
#include <string_view>

#include "app/Status.h"
#include "app/Version.h"
#include "log/DebugWriter.h"
#include "text/StdioFile.h"

namespace tolvanix {

namespace {

bool canRead(const char* fileName, const char* mode) {
  const StdioFile file(std::fopen(fileName, mode));
  if (!file) return false;
  // Linux opens folders; the first read then fails.
  std::fgetc(file.get());
  return std::ferror(file.get()) == 0;
}

void printWithVersion(const char* format) {
  std::printf(format, kProductTitle, kVersionMajor, kVersionMinor, kVersionBuild, kVersionRevision,
              kNoticeLine);
}

constexpr char kVersionFormat[] = "%s, v%d.%d.%d.%d\n%s\n";

constexpr char kHelpFormat[] =
    "========================================================================\n"
    "%s, v%d.%d.%d.%d\n"
    "%s\n"
    "========================================================================\n"
    "\n"
    "Usage: -h\n"
    "\tProvides detailed help information\n"
    "\n"
    "Usage: -v\n"
    "\tProvides program version information\n"
    "\n"
    "Usage: -i [-o <output filename>] [-d=<n>] [-e <debug filename>]\n"
    "\tProvides inventory information for all PCI devices\n"
    "\n"
    "Usage: -u [-p <package.xml filename>] [-n <INF filename>] [-c]\n"
    "        [-o <output filename>] [-d=<n>] [-e <debug filename>]\n"
    "\tAttempts to install updated driver(s) for any PCI devices listed\n"
    "\tin the specified package.xml file that are currently installed\n"
    "\t-p Specifies package.xml filename; if not specified, default\n"
    "\t   name is package.xml\n"
    "\t-n Specifies an INF filename in the current directory: if not\n"
    "\t   specified, program loops on INF files in the current\n"
    "\t   directory\n"
    "\t-c Causes program to simply check if applicable hardware IDs\n"
    "\t   exists in the specified INF file, if an INF file is\n"
    "\t   specified, or in any INF file found in the current directory,\n"
    "\t   if no INF file is specified\n"
    "\n"
    "Usage: -uhid -w <hardware ID> [-n <INF filename>] [-c]\n"
    "        [-o <output filename>] [-d=<n>] [-e <debug filename>]\n"
    "\tAttempts to install updated driver(s) for PCI devices that match\n"
    "\tthe specified hardware ID\n"
    "\t-w Specifies a hardware ID\n"
    "\t-n Specifies an INF filename in the current directory: if not\n"
    "\t   specified, program loops on INF files in the current\n"
    "\t   directory\n"
    "\t-c Causes program to simply check if the specified hardware ID\n"
    "\t   exists in the specified INF file, if an INF file is\n"
    "\t   specified, or in any INF file found in the current directory,\n"
    "\t   if no INF file is specified\n"
    "\n"
    "Descriptions of options common to the -i, -h, and -uhid commands:\n"
    "\t-o     Specifies output filename:\n"
    "\t       if not specified, any output is written to stdout\n"
    "\t-d=<n> Specifies debug level \"n\":\n"
    "\t       if not specified, default level is 0.\n"
    "\t       Debug level must be a value from 0 to 4:\n"
    "\t         0   = No debug output\n"
    "\t         1-4 = 1 is least verbose; 4 is most verbose\n"
    "\t-e     Specifies debug filename:\n"
    "\t       if not specified, any debug output is written to stdout\n"
    "\n"
    "========================================================================\n";

}  // namespace

std::int32_t CLIParser::parse(std::int32_t argumentCount, char* arguments[]) {
  if (argumentCount < 2) return kNoArguments;
  for (; argIndex < argumentCount; ++argIndex) {
    const std::int32_t result = readOption(argumentCount, arguments);
    if (result != kSuccess) return result;
  }
  return command != kCommandNone ? kSuccess : kNoCommand;
}

// Acts on the option at `argIndex` and leaves the index at its last argument. Not 0: `parse` ends
// with that result.
std::int32_t CLIParser::readOption(std::int32_t argumentCount, char* arguments[]) {
  const std::string_view option = arguments[argIndex];
  // A value is the next argument, whatever it looks like.
  const auto takeValue = [&](auto& field, std::int32_t missing) -> std::int32_t {
    if (++argIndex >= argumentCount) return missing;
    field = arguments[argIndex];
    return kSuccess;
  };

  if (option == "-h") {
    printHelp();
    return kHelpPrinted;
  }
  if (option == "-v") {
    printWithVersion(kVersionFormat);
    return kVersionPrinted;
  }
  if (option == "-i") return selectCommand(kCommandInventory);
  if (option == "-u") return selectCommand(kCommandUpdate);
  if (option == "-uhid") return selectCommand(kCommandUpdateHardwareId);
  if (option == "-o") return takeValue(outputFileName, kMissingOutputFileName);
  if (option.substr(0, 3) == "-d=") return setDebugLevel(arguments[argIndex] + 3);
  if (option == "-e") {
    const std::int32_t result = takeValue(debugFileName, kMissingDebugFileName);
    if (result == kSuccess) debugTarget = kTargetFile;
    return result;
  }
  if (option == "-p") return takeValue(packageFileName, kMissingPackageFileName);
  if (option == "-n") return takeValue(infFileName, kMissingInfFileName);
  if (option == "-w") return takeValue(hardwareID, kMissingHardwareId);
  if (option == "-c") {
    checkOnly = 1;
    return kSuccess;
  }
  return kInvalidArgument;
}

std::int32_t CLIParser::selectCommand(Command selected) {
  if (command != kCommandNone) return kMultipleCommands;
  command = selected;
  return kSuccess;
}

std::int32_t CLIParser::setDebugLevel(const char* digits) {
  if (digits[0] < '0' || digits[0] > '4' || digits[1] != '\0') return kInvalidDebugLevel;
  debugLevel = digits[0] - '0';
  if (debugTarget == kTargetNone) debugTarget = kTargetStandardOutput;
  return kSuccess;
}

void CLIParser::printHelp() {
  printWithVersion(kHelpFormat);
}

bool CLIParser::canReadText(const char* fileName) {
  return canRead(fileName, "rt");
}

bool CLIParser::canAppendText(const char* fileName) {
  const StdioFile file(std::fopen(fileName, "at"));
  return file != nullptr;
}

bool CLIParser::canReadBinary(const char* fileName) {
  return canRead(fileName, "rb");
}

}  // namespace tolvanix
