#include "winapi/posix/machine/PresentedMachine.h"

#include <sys/stat.h>

#include <cstdlib>
#include <utility>

#include "winapi/posix/machine/RegistryMachine.h"
#include "winapi/posix/machine/SysfsMachine.h"

namespace tolvanix::winapi {
namespace {

constexpr char kThisComputer[] = "/sys";

std::unique_ptr<Machine>& presented() {
  static std::unique_ptr<Machine> machine;
  return machine;
}

}  // namespace

std::unique_ptr<Machine> loadMachine(const std::string& name) {
  if (name.empty()) return std::make_unique<SysfsMachine>(kThisComputer, true);
  struct stat status {};
  if (stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    return std::make_unique<SysfsMachine>(name, false);
  }
  return std::make_unique<RegistryMachine>(name);
}

const Machine& presentedMachine() {
  std::unique_ptr<Machine>& machine = presented();
  if (machine == nullptr) {
    const char* const name = std::getenv("TOLVANIX_MACHINE");
    machine = loadMachine(name != nullptr ? name : "");
  }
  return *machine;
}

std::unique_ptr<Machine> exchangePresentedMachine(std::unique_ptr<Machine> next) {
  return std::exchange(presented(), std::move(next));
}

}  // namespace tolvanix::winapi
