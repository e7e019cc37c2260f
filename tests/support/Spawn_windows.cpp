#include <process.h>

#include "support/Spawn.h"

namespace tolvanix::test {

int spawnAndWait(char** arguments) {
  return static_cast<int>(_spawnv(_P_WAIT, arguments[0], arguments));
}

}  // namespace tolvanix::test
