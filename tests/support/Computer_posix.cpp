#include "support/Computer.h"

#include <cstdlib>

#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::test {

Computer::Computer(const std::filesystem::path& registryExport) {
  setenv("TOLVANIX_MACHINE", absolute(registryExport).c_str(), 1);
  winapi::exchangePresentedMachine(nullptr);  // it is loaded when first asked for
  end = std::shared_ptr<void>(nullptr, [](void* /*none*/) {
    unsetenv("TOLVANIX_MACHINE");
    winapi::exchangePresentedMachine(nullptr);
  });
}

}  // namespace tolvanix::test
