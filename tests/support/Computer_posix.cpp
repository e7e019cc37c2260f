#include "support/Computer.h"

#include <cstdlib>
#include <utility>

#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::test {

struct Computer::State {
  std::unique_ptr<winapi::Machine> before;
};

Computer::Computer(const std::filesystem::path& registryExport) {
  const std::string file = absolute(registryExport).string();
  setenv("TOLVANIX_MACHINE", file.c_str(), 1);
  state =
      std::make_unique<State>(State{winapi::exchangePresentedMachine(winapi::loadMachine(file))});
}

Computer::~Computer() {
  winapi::exchangePresentedMachine(std::move(state->before));
  unsetenv("TOLVANIX_MACHINE");
}

bool Computer::showsInstallations() {
  return true;
}

}  // namespace tolvanix::test
