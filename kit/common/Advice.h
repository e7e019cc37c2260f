// What the numbers of a run mean in plain words, and what to do about them.
#pragma once

namespace tolvanix::kit {

struct Advice {
  int number;
  const char* meaning;  // goes on after "Exit code 39: "
  const char* action;   // whole sentences
};

// Of an exit code, which is also the number of a status. Numbers that the program does not have
// get the advice for a program that was ended from outside.
const Advice& adviceForExitCode(int code);

// Of a device status (install/DeviceStatus.h).
const Advice& adviceForDeviceStatus(int status);

// Whether the status says that all was done as asked: 0, and 34 of a check.
bool isSuccess(int code);

}  // namespace tolvanix::kit
