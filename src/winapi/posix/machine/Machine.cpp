#include "winapi/posix/machine/Machine.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "winapi/posix/machine/RegistryMachine.h"
#include "winapi/posix/machine/SysfsMachine.h"

namespace tolvanix::winapi {
namespace {

constexpr char kThisComputer[] = "/sys";

// Of a relative name the absolute one. Takes no memory, the lack of which nobody could handle yet.
const char* machineFromEnvironment() {
  const char* const name = std::getenv("TOLVANIX_MACHINE");
  if (name == nullptr || *name == '\0' || *name == '/') return name == nullptr ? "" : name;
  static char absolute[2 * PATH_MAX];
  if (getcwd(absolute, PATH_MAX) == nullptr) return name;
  const std::size_t folder = std::strlen(absolute);
  std::snprintf(absolute + folder, sizeof absolute - folder, "/%s", name);
  setenv("TOLVANIX_MACHINE", absolute, 1);  // for programs that this one starts elsewhere
  return absolute;
}

// Taken before main: the program changes its current directory first of all, and a relative name
// is meant where it was started.
const char* const kMachineAtStart = machineFromEnvironment();

std::unique_ptr<Machine>& presented() {
  static std::unique_ptr<Machine> machine;
  return machine;
}

}  // namespace

std::string fold(std::string_view text) {
  std::string folded(text);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}

RegistryValue textValue(std::string_view text) {
  std::string data(text.size() + 1, '\0');
  text.copy(data.data(), text.size());
  return {REG_SZ, std::move(data)};
}

std::string textIn(const RegistryValue& value) {
  return value.data.substr(0, value.data.find('\0'));
}

RegistryValue numberValue(DWORD number) {
  std::string data(sizeof number, '\0');
  std::memcpy(data.data(), &number, sizeof number);
  return {REG_DWORD, std::move(data)};
}

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
  if (machine == nullptr) machine = loadMachine(kMachineAtStart);
  return *machine;
}

std::unique_ptr<Machine> exchangePresentedMachine(std::unique_ptr<Machine> next) {
  return std::exchange(presented(), std::move(next));
}

void reportMachine(const std::string& file, std::size_t line, const std::string& problem) {
  std::string place = file;
  if (line != 0) place.append(":").append(std::to_string(line));
  std::fprintf(stderr, "tolvanix: %s: %s\n", place.c_str(), problem.c_str());
}

}  // namespace tolvanix::winapi
