// Installs a driver on this platform: install_windows.cpp or install_posix.cpp.
#pragma once

// The helper program's exit codes. The first two mean success to the program that runs it.
enum ExitCode : int {
  kInstalled = 0,
  kInstalledRestart = 1,  // works only after a restart
  kNoMachine = 2,         // not Windows, and TOLVANIX_MACHINE names no registry export
  kWrongArguments = 3,
  kInfUnusable = 4,   // cannot be read, or lacks what a driver needs
  kNoDevice = 5,      // no device has the hardware ID (off Windows: none that has a driver)
  kNotInstalled = 6,  // any other refusal of the system; or the machine's file cannot be written
  kNotBetter = 7,     // the installed driver is newer (on Windows: as good, or better) and stays
  kNoRights = 8,      // the user may not install drivers
  kNeedsAnswer = 9,   // the system has to ask a user, and none is there
};

// Installs the driver of the INF file, given by its full path, on every device that has the
// hardware ID. Says on standard error why it could not.
ExitCode install(const char* hardwareId, const char* infPath);
