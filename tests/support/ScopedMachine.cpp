#include "support/ScopedMachine.h"

#include <utility>

namespace tolvanix::test {

ScopedMachine::ScopedMachine(const std::filesystem::path& machine)
    : before(winapi::exchangePresentedMachine(winapi::loadMachine(machine.string()))) {}

ScopedMachine::~ScopedMachine() {
  winapi::exchangePresentedMachine(std::move(before));
}

}  // namespace tolvanix::test
