// The program's trace: one process-wide log that every operation writes its steps to, at the
// level and to the target that the command line chose.
#pragma once

#include <string_view>

namespace tolvanix {

// Trace levels in use. Levels 1 and 3 exist on the command line and add nothing.
constexpr int kTraceErrors = 2;
constexpr int kTraceSteps = 4;

// Where trace text goes: a set of bits, negative for nowhere; 0 means the file as well.
constexpr int kTargetNone = -1;
constexpr int kTargetFile = 1;
constexpr int kTargetStandardOutput = 2;
constexpr int kTargetStandardError = 4;

// Writes printf-style text, unchanged, without testing the level. Returns the count of characters
// of the last write; 0 when nothing was written, -1 when the debug file could not be opened.
[[gnu::format(printf, 1, 2)]] int debugTrace(const char* format, ...);

// True when the current level is `level` or more.
bool debugLevelAtLeast(int level);

// debugTrace at the level of errors, or of steps. Macros, so that the arguments are computed only
// when that level is in force.
#define TRACE_ERROR(...) TRACE_AT_LEVEL(::tolvanix::kTraceErrors, __VA_ARGS__)
#define TRACE_STEP(...) TRACE_AT_LEVEL(::tolvanix::kTraceSteps, __VA_ARGS__)
#define TRACE_AT_LEVEL(level, ...)                                                 \
  do {                                                                             \
    if (::tolvanix::debugLevelAtLeast(level)) ::tolvanix::debugTrace(__VA_ARGS__); \
  } while (false)

class DebugWriter {
 public:
  DebugWriter() = default;
  DebugWriter(const DebugWriter&) = delete;
  DebugWriter& operator=(const DebugWriter&) = delete;
  virtual ~DebugWriter() = default;

  // Puts the settings in force for the whole process and starts the file afresh with three header
  // lines, whatever the level and target; a file that cannot be opened is passed over. The name is
  // not copied and must outlive this object. A name that does not fit the log's path (`canHold`)
  // names no file.
  void initialize(int level, int target, const char* fileName);

  // Whether a debug file name fits the log's path: at most 255 characters.
  static bool canHold(const char* fileName);

  // Trace a whole XML text with a label, at the level of steps. Null is passed over.
  void dumpXML(const char* xml, const char* label) const;
  void dumpWideXML(const char16_t* xml, const char* label) const;

  int getDebugTarget() const { return debugTarget; }

 private:
  int debugTarget = kTargetNone;
  int debugLevel = 0;
  const char* debugFileName = nullptr;
};

}  // namespace tolvanix
