#include <cstdio>

#include "support/Files.h"
#include "support/ScopedMachine.h"
#include "support/ScopedRegistry.h"

namespace tolvanix::test {

// The keys as an export of the narrow kind, in which a text's bytes stand as they are.
struct ScopedRegistry::State {
  explicit State(const std::vector<TestKey>& keys) {
    std::string text = "REGEDIT4\n";
    for (const TestKey& key : keys) {
      text.append("\n[HKEY_LOCAL_MACHINE\\").append(key.path).append("]\n");
      for (const TestValue& value : key.values) {
        char hex[16];
        std::snprintf(hex, sizeof hex, "\"=hex(%x):", value.type);
        text.append("\"").append(value.name).append(hex);
        const char* separator = "";
        for (const char byte : value.bytes) {
          std::snprintf(hex, sizeof hex, "%s%02x", separator, static_cast<unsigned char>(byte));
          text += hex;
          separator = ",";
        }
        text += '\n';
      }
    }
    writeFile(folder / "keys.reg", text);
    machine.emplace(folder / "keys.reg");
  }

  TempDir folder;
  std::optional<ScopedMachine> machine;
};

ScopedRegistry::ScopedRegistry(const std::vector<TestKey>& keys)
    : state(std::make_unique<State>(keys)) {}

ScopedRegistry::~ScopedRegistry() = default;

}  // namespace tolvanix::test
