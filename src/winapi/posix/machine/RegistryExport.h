// Reader of Windows registry exports (.reg files, as `reg export` writes them): UTF-16LE with
// byte-order mark or UTF-8, "Windows Registry Editor Version 5.00", or REGEDIT4 with ANSI bytes.
// Files of one encoding that were joined, each with its mark and header, are one export.
// Format: support.microsoft.com, "How to add, modify, or delete registry subkeys and values by
// using a .reg file".
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "winapi/posix/machine/Machine.h"

namespace tolvanix::winapi {

// What is wrong with an export, and in which of its lines.
class MalformedExport : public std::runtime_error {
 public:
  MalformedExport(std::size_t where, const std::string& what)
      : std::runtime_error(what), line(where) {}
  const std::size_t line;
};

struct ExportedKey {
  std::size_t order = 0;  // grows with the place where the file first names the key
  std::map<std::string, RegistryValue, std::less<>> values;  // by folded names

  const RegistryValue* find(std::string_view foldedName) const;
};

// Keys below HKEY_LOCAL_MACHINE by their folded paths, SYSTEM\ControlSet001 under the name of
// SYSTEM\CurrentControlSet.
using ExportedKeys = std::map<std::string, ExportedKey, std::less<>>;

// The keys of an export that `wanted` chooses by their folded paths, as they are after an import:
// later lines add to earlier ones, override or delete them. All of the file is checked.
ExportedKeys readRegistryExport(std::string_view bytes, bool (*wanted)(std::string_view path));

}  // namespace tolvanix::winapi
