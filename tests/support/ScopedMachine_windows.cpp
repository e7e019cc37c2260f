#include "support/Computer.h"
#include "support/ScopedMachine.h"

namespace tolvanix::test {

struct ScopedMachine::State {
  Computer computer;
};

ScopedMachine::ScopedMachine(const std::filesystem::path& machine)
    : state(new State{Computer(machine)}) {}

ScopedMachine::~ScopedMachine() = default;

}  // namespace tolvanix::test
