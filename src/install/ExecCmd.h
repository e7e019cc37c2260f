// Runs one command line to its end, with its standard output kept apart from ours.
#pragma once

#include "winapi/winapi.h"

namespace tolvanix {

// Results of `ExecCmd`.
enum ExecResult : int {
  kExecEnded = 0,
  kExecFailed = -1,    // not started, or its exit code could not be read
  kExecTimedOut = -3,  // left running
};

// The platform finds the program in the command line; no shell is involved. A null or empty
// working directory means the current one; one of more than 255 characters is a failure.
// `exitCode` is the child's, or the platform's error code with kExecFailed; it stays as it is when
// the time runs out. The time limit is in seconds, 0 or less for 1200. The last piece of the
// child's standard output, at most `outputSize` - 1 bytes, is left zero-terminated in `output`;
// a child that writes more than a pipe holds blocks until its time is out. `progress` is on a
// terminal meanwhile (ProgressLine).
int ExecCmd(const char* workingDirectory, const char* commandLine, WORD showWindow, char* output,
            DWORD outputSize, DWORD& exitCode, int timeLimitSeconds, const char* progress = "");

}  // namespace tolvanix
