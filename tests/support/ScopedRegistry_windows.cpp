#include <stdexcept>

#include "support/ScopedRegistry.h"
#include "winapi/winapi.h"

namespace tolvanix::test {

struct ScopedRegistry::State {
  std::vector<std::string> paths;
};

ScopedRegistry::ScopedRegistry(const std::vector<TestKey>& keys)
    : state(std::make_unique<State>()) {
  for (const TestKey& key : keys) {
    HKEY opened = nullptr;
    if (RegCreateKeyA(HKEY_LOCAL_MACHINE, key.path.c_str(), &opened) != ERROR_SUCCESS) {
      throw std::runtime_error("cannot make the key " + key.path);
    }
    state->paths.push_back(key.path);
    for (const TestValue& value : key.values) {
      RegSetValueExA(opened, value.name.c_str(), 0, value.type,
                     reinterpret_cast<const BYTE*>(value.bytes.data()),
                     static_cast<DWORD>(value.bytes.size()));
    }
    RegCloseKey(opened);
  }
}

ScopedRegistry::~ScopedRegistry() {
  for (const std::string& path : state->paths) RegDeleteTreeA(HKEY_LOCAL_MACHINE, path.c_str());
}

}  // namespace tolvanix::test
