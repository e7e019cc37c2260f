#include "winapi/posix/machine/RegistryExport.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "text/Hex.h"
#include "winapi/posix/base/Utf16.h"

namespace tolvanix::winapi {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";  // the byte-order mark in UTF-8
constexpr std::string_view kLocalMachine = "hkey_local_machine\\";
constexpr std::string_view kFirstControlSet = "system\\controlset001";
constexpr std::string_view kCurrentControlSet = "system\\currentcontrolset";

bool isText(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The folded path below HKEY_LOCAL_MACHINE; empty for a key elsewhere.
std::string canonicalPath(std::string_view name) {
  std::string path = toLower(name);
  if (!path.starts_with(kLocalMachine)) return {};
  path.erase(0, kLocalMachine.size());
  const bool firstSet =
      path.starts_with(kFirstControlSet) &&
      (path.size() == kFirstControlSet.size() || path[kFirstControlSet.size()] == '\\');
  if (firstSet) path.replace(0, kFirstControlSet.size(), kCurrentControlSet);
  return path;
}

void eraseTree(ExportedKeys& keys, const std::string& path) {
  keys.erase(path);
  const std::string below = path + '\\';
  const auto first = keys.lower_bound(below);
  auto last = first;
  while (last != keys.end() && last->first.starts_with(below)) ++last;
  keys.erase(first, last);
}

class Reader {
 public:
  Reader(std::string_view fileText, bool (*wantedKeys)(std::string_view))
      : text(fileText), wanted(wantedKeys) {}

  ExportedKeys read() {
    if (text.empty()) fail("the file is empty");
    if (!takeHeader()) fail("this is no header of a registry export");
    while (position < text.size()) {
      skipBlanks();
      const char c = peek();
      if (c == '[') {
        readKey();
      } else if (c == '"' || c == '@') {
        readValue();
      } else if (c == ';') {
        takeLine();
      } else if (!takeHeader()) {
        endLine("this is neither a key nor a value");
      }
    }
    return std::move(keys);
  }

 private:
  [[noreturn]] void fail(const std::string& problem) const { throw MalformedExport(line, problem); }

  // The zero byte means the end, so it is no character of a valid file.
  char peek() const { return position < text.size() ? text[position] : '\0'; }

  void skipBlanks() {
    while (peek() == ' ' || peek() == '\t' || peek() == '\r') ++position;
  }

  std::string_view takeLine() {
    const std::size_t end = std::min(text.find('\n', position), text.size());
    const std::string_view taken = text.substr(position, end - position);
    position = std::min(end + 1, text.size());
    ++line;
    return trimmed(taken);
  }

  // Takes the rest of a line, which may hold a comment and nothing else.
  void endLine(const char* problem) {
    skipBlanks();
    if (position < text.size() && peek() != '\n' && peek() != ';') fail(problem);
    takeLine();
  }

  bool takeWord(std::string_view word) {
    if (!text.substr(position).starts_with(word)) return false;
    position += word.size();
    return true;
  }

  // Takes the line that begins an export, and each one that was joined to it.
  bool takeHeader() {
    takeWord(kMark);
    const std::size_t end = std::min(text.find('\n', position), text.size());
    const std::string_view header = trimmed(text.substr(position, end - position));
    const bool isWide = header == "Windows Registry Editor Version 5.00";
    if (!isWide && header != "REGEDIT4") return false;
    wide = isWide;
    inKey = false;
    takeLine();
    return true;
  }

  void readKey() {
    const std::size_t end = std::min(text.find('\n', position), text.size());
    const std::string_view whole = text.substr(position, end - position);
    const std::size_t close = whole.rfind(']');
    if (close == std::string_view::npos) fail("the key has no closing bracket");
    std::string_view name = whole.substr(1, close - 1);
    const bool deleted = name.starts_with('-');
    if (deleted) name.remove_prefix(1);
    if (name.empty()) fail("the key has no name");
    const std::string path = canonicalPath(name);
    inKey = true;
    key = nullptr;
    if (deleted) {
      if (!path.empty()) eraseTree(keys, path);
    } else if (!path.empty() && wanted(path)) {
      const auto [entry, added] = keys.try_emplace(path);
      key = &entry->second;
      if (added) key->order = ++keysMet;
    }
    position += close + 1;
    endLine("there is text after the key");
  }

  void readValue() {
    if (!inKey) fail("this value is before the first key");
    const std::string name = takeWord("@") ? std::string() : toLower(readString());
    skipBlanks();
    if (!takeWord("=")) fail("the value's name is not followed by an equals sign");
    skipBlanks();
    if (takeWord("-")) {
      if (key != nullptr) key->values.erase(name);
    } else {
      RegistryValue value = readData();
      if (key != nullptr) key->values.insert_or_assign(name, std::move(value));
    }
    endLine("there is text after the value");
  }

  RegistryValue readData() {
    if (peek() == '"') return textValue(readString());
    if (takeWord("dword:")) return numberValue(readNumber());
    DWORD type = REG_BINARY;
    if (takeWord("hex(")) {
      type = readNumber();
      if (!takeWord("):")) fail("the type of the value is not followed by \"):\"");
    } else if (!takeWord("hex:")) {
      fail("this is no form of data");
    }
    std::string bytes = readBytes();
    if (isText(type) && wide) return {type, utf16ToUtf8(bytes)};
    return {type, std::move(bytes)};
  }

  // Exports break a text that holds line ends at them, inside its quotes.
  std::string readString() {
    std::string value;
    const std::size_t first = line;
    ++position;
    for (; position < text.size(); ++position) {
      char c = text[position];
      if (c == '"') {
        ++position;
        return value;
      }
      if (c == '\\' && position + 1 < text.size()) c = text[++position];
      if (c == '\n') ++line;
      value += c;
    }
    line = first;
    fail("the text has no closing quote");
  }

  DWORD readNumber() {
    DWORD number = 0;
    const std::size_t start = position;
    for (int digit = hexDigitValue(peek()); digit >= 0; digit = hexDigitValue(peek())) {
      number = number * 16 + static_cast<DWORD>(digit);
      ++position;
    }
    if (position == start || position - start > 8) fail("one to eight hexadecimal digits needed");
    return number;
  }

  std::string readBytes() {
    std::string bytes;
    for (bool more = continued(false); more;) {
      const int high = hexDigitValue(peek());
      if (high < 0) fail("a byte is missing in the value");
      ++position;
      const int low = hexDigitValue(peek());
      if (low >= 0) ++position;
      bytes += static_cast<char>(low >= 0 ? high * 16 + low : high);
      skipBlanks();
      const bool comma = takeWord(",");
      more = comma && continued(true);
    }
    return bytes;
  }

  // Goes on over line ends after a backslash; true when another byte follows, or `must`.
  bool continued(bool must) {
    skipBlanks();
    while (takeWord("\\")) {
      skipBlanks();
      if (peek() != '\n') fail("the value ends in the middle");
      takeLine();
      skipBlanks();
    }
    return must || hexDigitValue(peek()) >= 0;
  }

  std::string_view text;
  bool (*wanted)(std::string_view);
  std::size_t position = 0;
  std::size_t line = 1;
  bool wide = false;
  bool inKey = false;
  ExportedKey* key = nullptr;  // null below a key that is not kept
  std::size_t keysMet = 0;
  ExportedKeys keys;
};

}  // namespace

const RegistryValue* ExportedKey::find(std::string_view foldedName) const {
  const auto found = values.find(foldedName);
  return found == values.end() ? nullptr : &found->second;
}

ExportedKeys readRegistryExport(std::string_view bytes, bool (*wanted)(std::string_view path)) {
  if (bytes.starts_with("\xFF\xFE")) {
    const std::string text = utf16ToUtf8(bytes.substr(2));
    if (bytes.size() % 2 != 0) {
      throw MalformedExport(
          static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1,
          "the file ends in half a UTF-16 unit");
    }
    return Reader(text, wanted).read();
  }
  return Reader(bytes, wanted).read();
}

}  // namespace tolvanix::winapi
