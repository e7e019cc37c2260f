// What a person at a terminal sees while the program waits for another one.
#pragma once

#include <cstddef>

namespace tolvanix {

// How far an update has come when a device's turn comes.
struct DeviceCount {
  unsigned done = 0;
  unsigned all = 1;
};

class ProgressLine {
 public:
  // Shows as much of the text as one line holds, when standard error is a terminal; else nothing.
  explicit ProgressLine(const char* text);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  // Erases it.
  ~ProgressLine();

 private:
  std::size_t length = 0;  // of what is shown
};

}  // namespace tolvanix
