// One line of an INF file, split into its fields. The syntax is published: "General Syntax Rules
// for INF Files" (learn.microsoft.com/windows-hardware/drivers/install).
#pragma once

#include <cstddef>
#include <cstdint>
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

class InfLine {
 public:
  // Splits the line at `begin`, its continuation lines included, and returns the end of the last
  // one. A line feed must stand at `limit` if it did not stand before it, and kInfScanWidth bytes
  // behind that be readable. Fields then stand for what is between the commas, without blanks
  // around it, with quotes taken away; %names% are left. The text must stay as long as the fields
  // are asked for.
  const char* split(const char* begin, const char* limit);

  // Fields behind the key.
  std::size_t count() const { return fieldCount - 1; }

  // Field 0 is the key; a line of a single value without a key has that value as its key too.
  // Nothing when the line does not have the field.
  std::optional<std::string_view> field(std::size_t index) const {
    if (index >= fieldCount || (index == 0 && !hasKey)) return std::nullopt;
    const char* begin = base + fields[index].begin;
    const char* end = base + fields[index].end;
    if (!exact) {
      while (begin < end && isInfBlank(*begin)) ++begin;
      while (begin < end && isInfBlank(end[-1])) --end;
    }
    return std::string_view(begin, static_cast<std::size_t>(end - begin));
  }

 private:
  // From `base`.
  struct Field {
    std::uint32_t begin;
    std::uint32_t end;
  };

  void addField(Field field) {
    if (fieldCount == fields.size()) fields.resize(2 * fieldCount + 8);
    fields[fieldCount++] = field;
  }
  void start(const char* fieldBase);
  const char* splitDecoding(const char* begin, const char* limit);
  void finish();

  std::vector<Field> fields;  // only grows; field 0 is the key
  std::size_t fieldCount = 1;
  bool hasKey = false;
  // Whether fields are without the blanks around them. Most are never looked at, so that pieces of
  // the text are trimmed when they are.
  bool exact = false;
  const char* base = nullptr;  // what the fields count from: the text itself, or `decoded`
  std::string decoded;
};

}  // namespace tolvanix
