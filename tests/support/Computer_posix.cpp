#include "support/Computer.h"

namespace tolvanix::test {

Computer::Computer(const std::filesystem::path& registryExport)
    : variables{{"TOLVANIX_MACHINE", std::filesystem::absolute(registryExport).string()}} {}

Computer::~Computer() = default;

std::string Computer::withoutOwnDevice(std::string document) {
  return document;
}

}  // namespace tolvanix::test
