// The command line: one command, its settings, and the help and version texts.
#pragma once

#include <cstdint>

namespace tolvanix {

enum Command : std::int32_t {
  kCommandNone = 0,
  kCommandInventory = 1,
  kCommandUpdate = 2,
  kCommandUpdateHardwareId = 3,
};

// Results of `parse` besides the statuses: the run is over.
constexpr std::int32_t kVersionPrinted = -1;
constexpr std::int32_t kHelpPrinted = -2;

// The texts that `parse` stores point into the argument vector, which must outlive the parser.
class CLIParser {
 public:
  CLIParser() = default;
  CLIParser(const CLIParser&) = delete;
  CLIParser& operator=(const CLIParser&) = delete;
  virtual ~CLIParser() = default;

  // Reads the whole command line; called once. 0 when a command was selected, kHelpPrinted or
  // kVersionPrinted, otherwise the status of the first error in argument order (2 to 10, 12).
  std::int32_t parse(std::int32_t argumentCount, char* arguments[]);

  static void printHelp();

  std::int32_t getCommand() const { return command; }
  std::int32_t getDebugLevel() const { return debugLevel; }
  std::int32_t getDebugTarget() const { return debugTarget; }  // a DebugWriter target
  const char* getDebugFileName() const { return debugFileName; }
  const char* getOutputFileName() const { return outputFileName; }  // null: standard output
  const char* getPackageFileName() const { return packageFileName; }
  const char* getHardwareID() const { return hardwareID; }    // null: none given
  const char* getINFFileName() const { return infFileName; }  // null: all INF files
  std::int32_t getCheckOnly() const { return checkOnly; }

  // Whether a file opens in that mode; it is closed at once. Appending creates an absent file. A
  // folder is never readable.
  static bool canReadText(const char* fileName);
  static bool canAppendText(const char* fileName);
  static bool canReadBinary(const char* fileName);

 private:
  std::int32_t readOption(std::int32_t argumentCount, char* arguments[]);
  std::int32_t selectCommand(Command selected);
  std::int32_t setDebugLevel(const char* digits);

  std::int32_t argIndex = 1;
  std::int32_t command = kCommandNone;
  std::int32_t debugLevel = 0;
  std::int32_t debugTarget = -1;
  const char* debugFileName = "tolvanix_debug.log";
  const char* outputFileName = nullptr;
  const char* packageFileName = "package.xml";
  const char* hardwareID = nullptr;
  const char* infFileName = nullptr;
  std::int32_t checkOnly = 0;
};

}  // namespace tolvanix
