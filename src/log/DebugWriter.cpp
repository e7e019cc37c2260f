#include "log/DebugWriter.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "text/Conversion.h"
#include "text/StdioFile.h"

namespace tolvanix {

namespace {

struct Log {
  int level = 0;
  int target = kTargetNone;
  char path[256] = "";
};

Log theLog;

bool goesToFile(int target) {
  return target == 0 || (target & kTargetFile) != 0;
}

// Leaves the arguments for another stream; writes at once.
[[gnu::format(printf, 2, 0)]] int printTo(std::FILE* stream, const char* format,
                                          std::va_list arguments) {
  std::va_list copy;
  va_copy(copy, arguments);
  const int written = std::vfprintf(stream, format, copy);
  va_end(copy);
  std::fflush(stream);
  return written;
}

}  // namespace

int debugTrace(const char* format, ...) {
  if (theLog.target < 0) return 0;
  StdioFile file;
  if (goesToFile(theLog.target)) {
    file.reset(std::fopen(theLog.path, "a"));
    if (!file) return -1;
  }
  int written = 0;
  std::va_list arguments;
  va_start(arguments, format);
  if (file) written = printTo(file.get(), format, arguments);
  if ((theLog.target & kTargetStandardError) != 0) written = printTo(stderr, format, arguments);
  if ((theLog.target & kTargetStandardOutput) != 0) written = printTo(stdout, format, arguments);
  va_end(arguments);
  return written;
}

bool debugLevelAtLeast(int level) {
  return theLog.level >= level;
}

void DebugWriter::initialize(int level, int target, const char* fileName) {
  debugTarget = target;
  debugLevel = level;
  debugFileName = fileName;
  theLog.level = level;
  theLog.target = target;
  // A cut name would be another file's: a name that does not fit names none.
  std::snprintf(theLog.path, sizeof theLog.path, "%s", canHold(fileName) ? fileName : "");
  const StdioFile file(std::fopen(theLog.path, "w"));
  if (!file) return;
  std::fprintf(file.get(), "loglevel=%d\nlogtarget=%d\nlogpathfile=%s\n", level, target,
               theLog.path);
}

bool DebugWriter::canHold(const char* fileName) {
  return std::strlen(fileName) < sizeof theLog.path;
}

void DebugWriter::dumpXML(const char* xml, const char* label) const {
  if (xml != nullptr) TRACE_STEP("%s XML is:\n\n%s\n\n", label, xml);
}

void DebugWriter::dumpWideXML(const char16_t* xml, const char* label) const {
  if (debugTarget == kTargetNone || xml == nullptr || !debugLevelAtLeast(kTraceSteps)) return;
  debugTrace("converted wchar %s XML is:\n\n%s\n\n", label, narrow(xml).c_str());
}

}  // namespace tolvanix
