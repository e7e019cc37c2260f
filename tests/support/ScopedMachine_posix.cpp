#include <utility>

#include "support/ScopedMachine.h"
#include "winapi/posix/machine/PresentedMachine.h"

namespace tolvanix::test {

struct ScopedMachine::State {
  std::unique_ptr<winapi::Machine> before;
};

ScopedMachine::ScopedMachine(const std::filesystem::path& machine)
    : state(new State{winapi::exchangePresentedMachine(winapi::loadMachine(machine.string()))}) {}

ScopedMachine::~ScopedMachine() {
  winapi::exchangePresentedMachine(std::move(state->before));
}

}  // namespace tolvanix::test
