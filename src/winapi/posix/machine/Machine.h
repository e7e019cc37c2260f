// The computer that the layer presents: its devices and what the program reads of its
// registry.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

// Texts (REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ) are UTF-8 with the zeros that end them, a REG_DWORD
// its four bytes as the processor holds it, any other type the bytes as they are stored.
struct RegistryValue {
  DWORD type = 0;
  std::string data;
};

class Machine {
 public:
  Machine() = default;
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;
  virtual ~Machine() = default;

  // Present devices are numbered from 0 in enumeration order.
  virtual std::size_t deviceCount() const = 0;
  // One SPDRP_ property, texts resolved and ending in exactly their zeros; none when the device
  // lacks it.
  virtual std::optional<RegistryValue> deviceProperty(std::size_t device, DWORD property) const = 0;

  // Paths are below HKEY_LOCAL_MACHINE; the case of ASCII letters does not count in them, nor in
  // the names of values.
  virtual bool hasKey(std::string_view path) const = 0;
  virtual std::optional<RegistryValue> value(std::string_view path,
                                             std::string_view name) const = 0;
};

// Below HKEY_LOCAL_MACHINE, in lower case.
constexpr std::string_view kVersionKey = R"(software\microsoft\windows nt\currentversion)";
constexpr std::string_view kLanguageKey = R"(system\currentcontrolset\control\nls\language)";

RegistryValue textValue(std::string_view text);
// The text of a value, without what follows its first zero.
std::string textIn(const RegistryValue& value);
RegistryValue numberValue(DWORD number);

// One line on standard error about a machine that cannot be read; no line number for 0.
void reportMachine(const std::string& file, std::size_t line, const std::string& problem);

}  // namespace tolvanix::winapi
