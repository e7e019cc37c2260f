// One line of an INF file, split into its fields. The syntax is published: "General Syntax Rules
// for INF Files" (learn.microsoft.com/windows-hardware/drivers/install).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvanix {

// Blanks are the control characters too, the carriage return before a line's end among them.
inline bool isInfBlank(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

// The line feed that ends the line, or `limit`.
const char* endOfInfLine(const char* begin, const char* limit);

// The first character from `begin` on that is neither blank nor in a comment line, or `limit`.
const char* skipToInfContent(const char* begin, const char* limit);

// Whether the line ends in a backslash, comment and blanks aside, and so goes on in the next one.
bool infLineContinues(const char* begin, const char* lineEnd);

// The end of the line at `begin`, its continuation lines included.
const char* endOfWholeInfLine(const char* begin, const char* limit);

class InfLine {
 public:
  // Splits the line at `begin`, its continuation lines included, and returns the end of the last
  // one. Fields then stand for what is between the commas, without blanks around it, with quotes
  // taken away; %names% are left. The text must stay as long as the fields are asked for.
  const char* split(const char* begin, const char* limit);

  // Fields behind the key.
  std::size_t count() const { return fields.size() - 1; }

  // Field 0 is the key; a line of a single value without a key has that value as its key too.
  // Nothing when the line does not have the field.
  std::optional<std::string_view> field(std::size_t index) const {
    if (index >= fields.size() || (index == 0 && !hasKey)) return std::nullopt;
    return std::string_view(base + fields[index].begin, fields[index].length);
  }

 private:
  struct Field {
    std::size_t begin;
    std::size_t length;
  };

  void start();
  void addPlain(const char* begin, const char* end);
  void splitPlain(const char* begin, const char* end);
  const char* splitDecoding(const char* begin, const char* limit);
  void finish();

  std::vector<Field> fields;
  bool hasKey = false;
  const char* base = nullptr;  // what the fields count from: the text itself, or `decoded`
  std::string decoded;
};

}  // namespace tolvanix
