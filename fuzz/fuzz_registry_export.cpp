// Registry exports: what is accepted is written again, in both forms of a file, and reads the same.
#include <algorithm>

#include "fuzz.h"
#include "winapi/posix/machine/RegistryExport.h"

namespace tolvanix::fuzz {

namespace {

using winapi::ExportedKeys;
using winapi::RegistryValue;

constexpr std::string_view kRoot = "[HKEY_LOCAL_MACHINE\\";

ExportedKeys read(std::string_view bytes) {
  return winapi::readRegistryExport(bytes, [](std::string_view) { return true; });
}

std::vector<ExportedKeys::const_iterator> inOrder(const ExportedKeys& keys) {
  std::vector<ExportedKeys::const_iterator> ordered;
  for (auto key = keys.begin(); key != keys.end(); ++key) ordered.push_back(key);
  std::sort(ordered.begin(), ordered.end(),
            [](auto left, auto right) { return left->second.order < right->second.order; });
  return ordered;
}

std::string hex(DWORD number, const char* format) {
  char text[16] = "";
  std::snprintf(text, sizeof text, format, number);
  return text;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

// Of any type, four bytes a line.
std::string hexData(DWORD type, const std::string& bytes) {
  std::string text = hex(type, "hex(%x):");
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text += hex(static_cast<unsigned char>(bytes[i]), "%02x");
    if (i + 1 < bytes.size()) text += i % 4 == 3 ? ",\\\r\n  " : ",";
  }
  return text;
}

bool isText(const RegistryValue& value) {
  return value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ;
}

// As the system itself writes it: numbers and texts as such, where they are.
std::string readableData(const RegistryValue& value) {
  const std::string& data = value.data;
  const auto byte = [&data](std::size_t i) { return DWORD{static_cast<unsigned char>(data[i])}; };
  if (value.type == REG_DWORD && data.size() == sizeof(DWORD)) {
    return hex(byte(0) + byte(1) * 0x100 + byte(2) * 0x10000 + byte(3) * 0x1000000, "dword:%08x");
  }
  const std::string text = naive::upToZero(data);
  if (value.type == REG_SZ && data == text + '\0') return quoted(text);
  if (!isText(value)) return hexData(value.type, data);
  return hexData(value.type, naive::utf8ToUtf16(data).value_or(""));
}

std::string written(const ExportedKeys& keys, const char* header,
                    std::string (*dataOf)(const RegistryValue& value)) {
  std::string text = header;
  for (const auto& key : inOrder(keys)) {
    text.append(kRoot).append(key->first).append("]\r\n");
    for (const auto& [name, value] : key->second.values) {
      text += (name.empty() ? "@" : quoted(name)) + '=' + dataOf(value) + "\r\n";
    }
  }
  return text;
}

void expectSame(const char* what, const ExportedKeys& found, const ExportedKeys& expected) {
  const auto content = [](const ExportedKeys& keys) {
    std::vector<std::string> lines;
    for (const auto& key : inOrder(keys)) {
      lines.push_back(key->first);
      for (const auto& [name, value] : key->second.values) {
        lines.push_back(name + '=' + std::to_string(value.type) + ':' + value.data);
      }
    }
    return lines;
  };
  expectEqual(what, content(found), content(expected));
}

}  // namespace

void registryExport(std::string_view input) {
  ExportedKeys keys;
  try {
    keys = read(input);
  } catch (const winapi::MalformedExport& malformed) {
    const auto ends = static_cast<std::size_t>(std::count(input.begin(), input.end(), '\n'));
    expectEqual("a line of the file", malformed.line >= 1 && malformed.line <= ends + 2, true);
    return;
  }
  const std::string narrow = written(keys, "REGEDIT4\r\n", [](const RegistryValue& value) {
    return hexData(value.type, value.data);
  });
  expectSame("the old form", read(narrow), keys);
  const std::string readable =
      written(keys, "Windows Registry Editor Version 5.00\r\n", readableData);
  // Text that is no UTF-8 has no UTF-16.
  const auto wide = naive::utf8ToUtf16(readable);
  bool isWide = wide.has_value();
  for (const auto& [path, key] : keys) {
    for (const auto& [name, value] : key.values) {
      isWide = isWide && (!isText(value) || naive::utf8ToUtf16(value.data));
    }
  }
  if (isWide) expectSame("the wide form", read("\xFF\xFE" + *wide), keys);
}

}  // namespace tolvanix::fuzz
