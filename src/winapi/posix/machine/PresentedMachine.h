// Which computer is presented. TOLVANIX_MACHINE names it: unset or empty for this one, a directory
// for a sysfs tree (in place of /sys), a file for a Windows registry export.
#pragma once

#include <memory>
#include <string>

#include "winapi/posix/machine/Machine.h"

namespace tolvanix::winapi {

// The computer that `name`, a value of TOLVANIX_MACHINE, means. When it cannot be read: a line on
// standard error, and a computer without devices.
std::unique_ptr<Machine> loadMachine(const std::string& name);

// The computer presented; loaded when first asked for.
const Machine& presentedMachine();

// Presents another one, for tests, and returns the one presented before (null when none was loaded
// yet).
std::unique_ptr<Machine> exchangePresentedMachine(std::unique_ptr<Machine> next);

}  // namespace tolvanix::winapi
