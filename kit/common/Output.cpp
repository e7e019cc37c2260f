#include "common/Output.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

#include "common/Outcome.h"
#include "common/Terminal.h"

namespace tolvanix::kit {

std::optional<std::size_t> lineLimit() {
  const char* const value = std::getenv("COLUMNS");
  const std::string_view text = value != nullptr ? value : "";
  std::size_t wanted = 0;
  std::from_chars(text.data(), text.data() + text.size(), wanted);
  return wanted > 0 ? wanted : terminalWidth();
}

void print(const std::string& text) {
  if (!writeStandardOutput(text)) throw BadInput("standard output cannot be written");
}

}  // namespace tolvanix::kit
