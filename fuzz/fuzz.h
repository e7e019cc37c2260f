// What the fuzz targets share. A target takes any bytes, has the program read them, and compares
// with a naive form of the same: written from the rules alone, as slow and as plain as it likes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "winapi/posix/machine/Machine.h"

namespace tolvanix::fuzz {

// ---- The targets, each in the file of its name ----

void inf(std::string_view input);
void registryExport(std::string_view input);
void inventory(std::string_view input);
void execution(std::string_view input);
void query(std::string_view input);
void text(std::string_view input);
void match(std::string_view input);

// ---- Findings ----

// For people: bytes that do not print as \xNN, the parts of a list in brackets.
std::string show(std::string_view text);
std::string show(std::u16string_view text);
inline std::string show(const char16_t* text) {
  return show(std::u16string_view(text));
}
template <typename T>
std::string show(const T& value) {
  if constexpr (std::is_convertible_v<T, std::string_view>) {
    return show(std::string_view(value));
  } else if constexpr (std::is_convertible_v<T, std::u16string_view>) {
    return show(std::u16string_view(value));
  } else if constexpr (std::is_arithmetic_v<T>) {
    return std::to_string(value);
  } else if constexpr (requires { *value; }) {
    return value ? show(*value) : "none";
  } else if constexpr (requires { value.second; }) {
    return show(value.first) + ": " + show(value.second);
  } else {
    std::string list = "[";
    for (const auto& part : value) list += show(part) + ", ";
    return list + "]";
  }
}

[[noreturn]] void reportFinding(const char* what, const std::string& found,
                                const std::string& expected);

// Ends the process with a message unless the program found what the naive form did.
template <typename Found, typename Expected>
void expectEqual(const char* what, const Found& found, const Expected& expected) {
  if (!(found == expected)) reportFinding(what, show(found), show(expected));
}

// ---- Inputs ----

// The input up to the separator, which `rest` loses with it; all of it when there is none.
std::string_view takePart(std::string_view& rest, char separator = '\x1E');

// A file in memory that has a name. With '\' in it, so that the platform layer takes it as a path.
class MemoryFile {
 public:
  MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile();
  void write(std::string_view bytes) const;
  const std::string& name() const { return path; }
  std::string platformName() const;

 private:
  int descriptor;
  std::string path;
};

// What the program has written to standard output since the last call.
std::string takeOutput();

// A folder in $TMPDIR, else in memory, removed when the process ends.
const std::string& scratchFolder();

// Makes that folder the current one.
class InScratchFolder {
 public:
  InScratchFolder();
  InScratchFolder(const InScratchFolder&) = delete;
  InScratchFolder& operator=(const InScratchFolder&) = delete;
  ~InScratchFolder();

 private:
  int before;
};

// Makes the file, or empties it, with these bytes.
void writeFile(const std::string& path, std::string_view bytes);

// A computer with a present device for each of the IDs, and nothing in its registry.
class PlainMachine : public winapi::Machine {
 public:
  explicit PlainMachine(std::vector<std::string> present) : ids(std::move(present)) {}
  std::size_t deviceCount() const override { return ids.size(); }
  std::optional<winapi::RegistryValue> deviceProperty(std::size_t device,
                                                      DWORD property) const override;
  bool hasKey(std::string_view /*path*/) const override { return false; }
  std::optional<winapi::RegistryValue> value(std::string_view /*path*/,
                                             std::string_view /*name*/) const override {
    return std::nullopt;
  }

 private:
  std::vector<std::string> ids;
};

// ---- Result documents ----

struct Element {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::string content;  // the text between its tags, when it has no children
  std::vector<Element> children;
  bool operator==(const Element&) const = default;
};
std::string show(const Element& element);

// The document as a parser of XML reads it. It must be well-formed and valid (docs/result.xsd).
Element readDocument(const std::string& document);

// The status of a run or of a device.
Element statusElement(int status);

// What a parser of XML makes of the text as a value of an attribute, after `toXmlUtf8`.
std::string attributeValue(std::u16string_view text);

namespace naive {

// ---- fuzz_text.cpp ----

std::u16string widen(std::string_view text);
std::string utf8(char32_t character);
// The text of UTF-16 units in this byte order, lone surrogates as U+FFFD.
std::string utf16ToUtf8(std::string_view bytes, bool bigEndian);
// The bytes of the text's UTF-16; none for what is no UTF-8.
std::optional<std::string> utf8ToUtf16(std::string_view text);
std::string xmlUtf8(std::u16string_view text);
std::u16string escaped(std::u16string text);
std::u16string unescaped(std::u16string text);
std::optional<std::int32_t> decimal(std::u16string_view text);
std::int32_t hexadecimal(std::u16string_view text);
std::string lower(std::string text);
std::string trimmed(const std::string& text, std::string_view blanks);
// The text as a function of the C library reads it.
template <typename Text>
Text upToZero(const Text& text) {
  return text.substr(0, text.find(typename Text::value_type()));
}

// ---- fuzz_query.cpp ----

std::vector<std::u16string> elements(const std::u16string& text, const std::u16string& name);
std::vector<std::u16string> attributeValues(const std::vector<std::u16string>& elements,
                                            const std::u16string& attribute);
// The first value, its entities resolved; empty for none.
std::u16string attribute(const std::vector<std::u16string>& elements,
                         const std::u16string& attribute);

// ---- fuzz_match.cpp ----

bool matchesId(const std::string& wanted, const std::string& listed);

// ---- fuzz_inf.cpp ----

// A model line that lists an ID.
struct Model {
  std::string manufacturer;
  std::string description;
  std::vector<std::string> ids;
};
struct InfContent {
  bool opens = false;
  std::vector<Model> models;  // in the order in which they are searched
};
InfContent readInf(std::string_view bytes);
// The first model that lists the ID; null for none.
const Model* findModel(const InfContent& content, const std::string& id);

}  // namespace naive
}  // namespace tolvanix::fuzz
