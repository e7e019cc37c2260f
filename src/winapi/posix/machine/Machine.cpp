#include "winapi/posix/machine/Machine.h"

#include <cstdio>
#include <cstring>
#include <utility>

namespace tolvanix::winapi {

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

void reportMachine(const std::string& file, std::size_t line, const std::string& problem) {
  std::string place = file;
  if (line != 0) place.append(":").append(std::to_string(line));
  std::fprintf(stderr, "tolvanix: %s: %s\n", place.c_str(), problem.c_str());
}

}  // namespace tolvanix::winapi
