#include "install/ProgressLine.h"

#include <algorithm>
#include <cstring>

#include "winapi/winapi.h"

namespace tolvanix {
namespace {

constexpr std::size_t kLongestLine = 255;

// 0 for a standard stream that is no terminal.
std::size_t terminalWidth(DWORD stream) {
  CONSOLE_SCREEN_BUFFER_INFO information{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(stream), &information) == FALSE) return 0;
  return static_cast<std::size_t>(std::max<int>(information.dwSize.X, 0));
}

void write(const char* text, std::size_t length) {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(length), &written, nullptr);
}

// The length of the text's beginning with whole UTF-8 characters and at most `limit` bytes. A
// character takes no more columns than it has bytes.
std::size_t cutLength(const char* text, std::size_t limit) {
  std::size_t length = std::min(std::strlen(text), limit);
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  return length;
}

bool isControl(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

}  // namespace

ProgressLine::ProgressLine(const char* text) {
  const std::size_t width = terminalWidth(STD_ERROR_HANDLE);
  if (width == 0) return;
  // The last column stays free: some terminals begin a new line after it.
  length = cutLength(text, std::min(width - 1, kLongestLine));
  if (length == 0) return;
  // A document or a trace on the same terminal has perhaps not ended its line.
  if (terminalWidth(STD_OUTPUT_HANDLE) != 0) write("\n", 1);
  char line[kLongestLine];
  std::replace_copy_if(text, text + length, line, isControl, '?');
  write(line, length);
}

ProgressLine::~ProgressLine() {
  if (length == 0) return;
  char line[kLongestLine + 2];
  std::fill_n(line, length + 2, ' ');
  line[0] = '\r';
  line[length + 1] = '\r';
  write(line, length + 2);
}

}  // namespace tolvanix
