#include "common/WrapLines.h"

#include <algorithm>

#include "common/DisplayWidth.h"

namespace tolvanix::kit {

namespace {

void appendWrapped(std::string& out, std::string_view line, std::size_t limit) {
  const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
  std::size_t used = indent;
  out += line.substr(0, indent);
  line.remove_prefix(indent);
  bool isFirst = true;
  while (!line.empty()) {
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    const std::size_t width = displayWidth(word);
    if (!isFirst && used + 1 + width > limit) {
      out.append("\n").append(indent + 2, ' ');
      used = indent + 2;
    } else if (!isFirst) {
      out += ' ';
      ++used;
    }
    out += word;
    used += width;
    isFirst = false;
  }
}

}  // namespace

std::string wrapLines(std::string_view text, std::optional<std::size_t> limit) {
  if (!limit) return std::string(text);
  std::string out;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    appendWrapped(out, line, *limit);
    out += '\n';
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return out;
}

}  // namespace tolvanix::kit
