#include "support/ScopedRegistry.h"

#include <utility>

#include "winapi/winapi.h"

namespace tolvanix::test {

TestValue textOf(const std::string& name, const std::string& text) {
  return {name, REG_SZ, text + '\0'};
}

TestValue listOf(const std::string& name, const std::vector<std::string>& texts) {
  std::string bytes;
  for (const std::string& text : texts) bytes += text + '\0';
  return {name, REG_MULTI_SZ, bytes + '\0'};
}

TestKey deviceKey(const std::string& instance, std::vector<TestValue> values) {
  values.push_back(textOf("ClassGUID", "{4d36e97d-e325-11ce-bfc1-08002be10318}"));
  return {R"(SYSTEM\CurrentControlSet\Enum\)" + instance, std::move(values)};
}

}  // namespace tolvanix::test
