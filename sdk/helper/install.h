// Installs a driver on this platform: install_windows.cpp or install_posix.cpp.
#pragma once

// The helper program's exit codes. The first two mean success to the program that runs it.
enum ExitCode : int {
  kInstalled = 0,
  kInstalledRestart = 1,  // works only after a restart
  kNoMachine = 2,         // not Windows, and TOLVANIX_MACHINE names no registry export
  kWrongArguments = 3,
  kInfUnusable = 4,   // cannot be read, or tells no driver version
  kNoDevice = 5,      // no device with a driver has the hardware ID
  kNotInstalled = 6,  // the system refused, or the machine's file could not be written
};

// Installs the driver of the INF file, given by its full path, on every device that has the
// hardware ID. Says on standard error why it could not.
ExitCode install(const char* hardwareId, const char* infPath);
