// One line of an INF file, split into its fields. The syntax is published: "General Syntax Rules
// for INF Files" (learn.microsoft.com/windows-hardware/drivers/install).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "winapi/posix/inf/InfDividers.h"

namespace tolvanix::winapi {

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
  // Splits the line that begins at `begin` with a character that is no blank, its continuation
  // lines included, and returns the end of the last one. What follows `limit` is as
  // InfDividers wants it. Fields then are what is between the commas, without blanks around it,
  // with quotes taken away; %names% are left. The text must stay as long as they are asked for.
  const char* split(const char* begin, const char* limit);

  // Before another text takes the place of the one whose lines were split.
  void clear() { ahead.clear(); }

  // Fields after the key.
  std::size_t count() const { return dividerCount - 1; }

  // Field 0 is the key; a line of a single value without a key has that value as its key too.
  // Nothing when the line does not have the field.
  std::optional<std::string_view> field(std::size_t index) const {
    if (!has(index)) return std::nullopt;
    if (index == 0 && !hasKey) index = 1;
    const char* begin = base + (index > 0 ? dividers[index - 1] + 1 : 0);
    const char* end = base + dividers[index];
    if (!exact) {
      while (begin < end && isInfBlank(*begin)) ++begin;
      while (begin < end && isInfBlank(end[-1])) --end;
    }
    return std::string_view(begin, static_cast<std::size_t>(end - begin));
  }

  bool has(std::size_t index) const {
    return index < dividerCount && (index > 0 || hasKey || dividerCount == 2);
  }

 private:
  void addDivider(std::size_t place) {
    if (dividerCount == dividers.size()) dividers.resize(2 * dividerCount + 64);
    dividers[dividerCount++] = static_cast<std::uint32_t>(place);
  }
  const char* splitDecoding(const char* begin, const char* limit);

  InfDividers ahead;
  const char* base = nullptr;  // what dividers count from: the text itself, or `decoded`
  // Where the fields end, the key first: its equals sign, the commas, the end of the line. A line
  // without a key has kNoKey in place of the first, so that field 1 begins at 0. Only grows.
  std::vector<std::uint32_t> dividers;
  std::size_t dividerCount = 0;
  bool hasKey = false;
  // Whether fields are without the blanks around them. Most are never looked at, so that pieces of
  // the text are trimmed when they are.
  bool exact = false;
  std::string decoded;
};

}  // namespace tolvanix::winapi
