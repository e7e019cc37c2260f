#include <windows.h>

#include <cstdio>

#include "common/Terminal.h"

namespace tolvanix::kit {

std::optional<std::size_t> terminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == FALSE) {
    return std::nullopt;
  }
  // A line that fills the window would be followed by an empty one.
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left);
}

bool writeStandardOutput(const std::string& text) {
  const bool toTerminal = terminalWidth().has_value();
  const UINT before = GetConsoleOutputCP();
  if (toTerminal) SetConsoleOutputCP(CP_UTF8);
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  const bool flushed = std::fflush(stdout) == 0;
  if (toTerminal) SetConsoleOutputCP(before);
  return written && flushed;
}

}  // namespace tolvanix::kit
