// Registry keys of a test, on either platform.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tolvanix::test {

struct TestValue {
  std::string name;
  unsigned type = 0;  // REG_SZ and so on
  std::string bytes;  // as stored, with the zeros that end texts
};

struct TestKey {
  std::string path;  // below HKEY_LOCAL_MACHINE
  std::vector<TestValue> values;
};

// The key of a device: its instance below SYSTEM\CurrentControlSet\Enum, such as
// "PCI\VEN_1DE4\1". Adds the ClassGUID that Wine asks of a device.
TestKey deviceKey(const std::string& instance, std::vector<TestValue> values);

// A text, or a list of texts with its last zero.
TestValue textOf(const std::string& name, const std::string& text);
TestValue listOf(const std::string& name, const std::vector<std::string>& texts);

// For the life of the object the platform's registry has these keys, and so the devices and
// drivers that they describe. Throws when they cannot be made.
class ScopedRegistry {
 public:
  explicit ScopedRegistry(const std::vector<TestKey>& keys);
  ScopedRegistry(const ScopedRegistry&) = delete;
  ScopedRegistry& operator=(const ScopedRegistry&) = delete;
  ~ScopedRegistry();

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace tolvanix::test
