#include "winapi/posix/machine/RegistryMachine.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>

#include "text/Ascii.h"
#include "winapi/ClassKeys.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/machine/IndirectText.h"

namespace tolvanix::winapi {
namespace {

constexpr std::string_view kEnumKeys = R"(system\currentcontrolset\enum\)";

struct Property {
  DWORD code;
  std::string_view name;  // folded
};
constexpr Property kProperties[] = {
    {SPDRP_HARDWAREID, "hardwareid"}, {SPDRP_FRIENDLYNAME, "friendlyname"},
    {SPDRP_DEVICEDESC, "devicedesc"}, {SPDRP_LOCATION_INFORMATION, "locationinformation"},
    {SPDRP_DRIVER, "driver"},
};

// Enum\<enumerator>\<device>\<instance>
bool isInstanceKey(std::string_view path) {
  return path.starts_with(kEnumKeys) &&
         std::count(path.begin() + kEnumKeys.size(), path.end(), '\\') == 2;
}

bool isWanted(std::string_view path) {
  return isInstanceKey(path) || equalIgnoringCase(path.substr(0, kClassKeys.size()), kClassKeys) ||
         path == kVersionKey || path == kLanguageKey;
}

bool isDevice(const ExportedKey& key) {
  return std::any_of(std::begin(kProperties), std::end(kProperties),
                     [&key](const Property& p) { return key.find(p.name) != nullptr; });
}

// Each string with its zero, up to the first empty one, which ends the list.
std::string wholeMultiString(const std::string& stored) {
  std::string list;
  for (std::size_t start = 0; start < stored.size();) {
    const std::string entry = stored.substr(start, stored.find('\0', start) - start);
    if (entry.empty()) break;
    list.append(entry).push_back('\0');
    start += entry.size() + 1;
  }
  list += '\0';
  return list;
}

}  // namespace

RegistryMachine::RegistryMachine(const std::string& file) {
  try {
    const std::optional<std::string> bytes = readWholeFile(file.c_str());
    if (!bytes) {
      reportMachine(file, 0, std::strerror(errno));
      return;
    }
    keys = readRegistryExport(*bytes, isWanted);
  } catch (const MalformedExport& malformed) {
    reportMachine(file, malformed.line, malformed.what());
    return;
  } catch (const std::exception&) {  // the memory is not enough
    reportMachine(file, 0, std::strerror(ENOMEM));
    return;
  }
  for (auto entry = keys.lower_bound(kEnumKeys);
       entry != keys.end() && entry->first.starts_with(kEnumKeys); ++entry) {
    if (isDevice(entry->second)) devices.push_back(&entry->second);
  }
  std::sort(devices.begin(), devices.end(), [](const ExportedKey* left, const ExportedKey* right) {
    return left->order < right->order;
  });
}

std::optional<RegistryValue> RegistryMachine::deviceProperty(std::size_t device,
                                                             DWORD property) const {
  const auto* const entry =
      std::find_if(std::begin(kProperties), std::end(kProperties),
                   [property](const Property& p) { return p.code == property; });
  if (entry == std::end(kProperties)) return std::nullopt;
  const RegistryValue* const stored = devices[device]->find(entry->name);
  if (stored == nullptr) return std::nullopt;
  if (stored->type == REG_MULTI_SZ)
    return RegistryValue{REG_MULTI_SZ, wholeMultiString(stored->data)};
  if (stored->type != REG_SZ && stored->type != REG_EXPAND_SZ) return std::nullopt;
  const std::optional<std::string> text = resolveIndirectText(textIn(*stored));
  if (!text) return std::nullopt;
  return textValue(*text);
}

bool RegistryMachine::hasKey(std::string_view path) const {
  const std::string folded = toLower(path);
  if (keys.contains(folded)) return true;
  const std::string below = folded + '\\';
  const auto next = keys.lower_bound(below);
  return next != keys.end() && next->first.starts_with(below);
}

std::optional<RegistryValue> RegistryMachine::value(std::string_view path,
                                                    std::string_view name) const {
  const auto key = keys.find(toLower(path));
  if (key == keys.end()) return std::nullopt;
  const RegistryValue* const stored = key->second.find(toLower(name));
  if (stored == nullptr) return std::nullopt;
  return *stored;
}

}  // namespace tolvanix::winapi
