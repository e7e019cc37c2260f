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

[[gnu::format(printf, 1, 0)]] int writeTrace(const char* format, std::va_list arguments) {
  if (theLog.target < 0) return 0;
  int written = 0;
  const auto writeTo = [&](std::FILE* stream) {
    std::va_list copy;
    va_copy(copy, arguments);
    written = std::vfprintf(stream, format, copy);
    va_end(copy);
  };
  if (goesToFile(theLog.target)) {
    const StdioFile file(std::fopen(theLog.path, "a"));
    if (!file) return -1;
    writeTo(file.get());
  }
  if ((theLog.target & kTargetStandardError) != 0) writeTo(stderr);
  if ((theLog.target & kTargetStandardOutput) != 0) {
    writeTo(stdout);
    std::fflush(stdout);
  }
  return written;
}

}  // namespace

int debugTrace(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int written = writeTrace(format, arguments);
  va_end(arguments);
  return written;
}

bool debugLevelAtLeast(int level) {
  return theLog.level >= level;
}

void traceError(const char* format, ...) {
  if (!debugLevelAtLeast(kTraceErrors)) return;
  std::va_list arguments;
  va_start(arguments, format);
  writeTrace(format, arguments);
  va_end(arguments);
}

void traceStep(const char* format, ...) {
  if (!debugLevelAtLeast(kTraceSteps)) return;
  std::va_list arguments;
  va_start(arguments, format);
  writeTrace(format, arguments);
  va_end(arguments);
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
  if (xml != nullptr) traceStep("%s XML is:\n\n%s\n\n", label, xml);
}

void DebugWriter::dumpWideXML(const char16_t* xml, const char* label) const {
  if (debugTarget == kTargetNone || xml == nullptr || !debugLevelAtLeast(kTraceSteps)) return;
  debugTrace("converted wchar %s XML is:\n\n%s\n\n", label, narrow(xml).c_str());
}

}  // namespace tolvanix
