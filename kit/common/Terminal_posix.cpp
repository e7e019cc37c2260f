#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "common/Terminal.h"

namespace tolvanix::kit {

std::optional<std::size_t> terminalWidth() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return std::nullopt;
  constexpr std::size_t kUsual = 80;  // of one that does not say
  return size.ws_col > 0 ? size.ws_col : kUsual;
}

bool writeStandardOutput(const std::string& text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  return std::fflush(stdout) == 0 && written;
}

}  // namespace tolvanix::kit
