// The computer that this stand-in platform presents: its devices and what the program reads of its
// registry. TOLVANIX_MACHINE names it: unset or empty for this computer, a directory for a sysfs
// tree (in place of /sys), a file for a Windows registry export.
#pragma once

#include <cstddef>
#include <memory>
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

// Below HKEY_LOCAL_MACHINE, folded.
constexpr std::string_view kClassKeys = R"(system\currentcontrolset\control\class\)";
constexpr std::string_view kVersionKey = R"(software\microsoft\windows nt\currentversion)";
constexpr std::string_view kLanguageKey = R"(system\currentcontrolset\control\nls\language)";

// With A to Z in lower case.
std::string fold(std::string_view text);

RegistryValue textValue(std::string_view text);
// The text of a value, without what follows its first zero.
std::string textIn(const RegistryValue& value);
RegistryValue numberValue(DWORD number);

// The computer that `name` stands for, as TOLVANIX_MACHINE does. One that cannot be read is one
// line on standard error and a computer without devices.
std::unique_ptr<Machine> loadMachine(const std::string& name);

// The computer presented; loaded when first asked for.
const Machine& presentedMachine();

// Presents another one, for tests, and answers the one presented before (null when none was loaded
// yet).
std::unique_ptr<Machine> exchangePresentedMachine(std::unique_ptr<Machine> next);

// One line on standard error about a machine that cannot be read; no line number for 0.
void reportMachine(const std::string& file, std::size_t line, const std::string& problem);

}  // namespace tolvanix::winapi
