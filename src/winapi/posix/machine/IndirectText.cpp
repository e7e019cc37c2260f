#include "winapi/posix/machine/IndirectText.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tolvanix::winapi {
namespace {

// Where the text after the reference starts, 0 for no reference, npos for one without text.
std::size_t textStart(std::string_view text) {
  if (!text.starts_with('@')) return 0;
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos || comma + 1 == text.size()) return 0;
  const char kind = text[comma + 1];
  if (kind != '%' && kind != '#' && kind != '-') return 0;
  const std::string_view end = kind == '%' ? "%;" : ";";
  const std::size_t found = text.find(end, comma + 2);
  return found == std::string_view::npos ? found : found + end.size();
}

std::vector<std::string_view> splitArguments(std::string_view list) {
  std::vector<std::string_view> arguments;
  for (std::size_t start = 0;;) {
    const std::size_t comma = list.find(',', start);
    arguments.push_back(list.substr(start, comma - start));
    if (comma == std::string_view::npos) return arguments;
    start = comma + 1;
  }
}

// A number without an argument stays as it is.
std::string insertArguments(std::string_view format, const std::vector<std::string_view>& list) {
  std::string text;
  for (std::size_t i = 0; i < format.size(); ++i) {
    const char digit = format[i] == '%' && i + 1 < format.size() ? format[i + 1] : '0';
    const std::size_t number =
        digit >= '1' && digit <= '9' ? static_cast<std::size_t>(digit - '1') : list.size();
    if (number < list.size()) {
      text += list[number];
      ++i;
    } else {
      text += format[i];
    }
  }
  return text;
}

}  // namespace

std::optional<std::string> resolveIndirectText(const std::string& text) {
  const std::size_t start = textStart(text);
  if (start == 0) return text;
  if (start == std::string::npos) return std::nullopt;
  const std::string_view body = std::string_view(text).substr(start);
  const std::size_t list = body.rfind(";(");
  if (list == std::string_view::npos || !body.ends_with(')') ||
      body.substr(0, list).find("%1") == std::string_view::npos) {
    return std::string(body);
  }
  const std::string_view arguments = body.substr(list + 2, body.size() - list - 3);
  return insertArguments(body.substr(0, list), splitArguments(arguments));
}

}  // namespace tolvanix::winapi
