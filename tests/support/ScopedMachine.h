// The computer that a test's own process sees.
#pragma once

#include "support/Computer.h"

namespace tolvanix::test {

// Device sets are closed before it.
using ScopedMachine = Computer;

}  // namespace tolvanix::test
