#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Spawn.h"

namespace tolvanix::test {

int spawnAndWait(char** arguments) {
  pid_t process = -1;
  int status = 0;
  if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments, environ) != 0 ||
      waitpid(process, &status, 0) != process || !WIFEXITED(status)) {
    return -1;
  }
  return WEXITSTATUS(status);
}

}  // namespace tolvanix::test
