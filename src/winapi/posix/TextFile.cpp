#include "winapi/posix/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "winapi/posix/FileBytes.h"
#include "winapi/posix/Paths.h"

namespace tolvanix {

namespace {

// Fills `size` bytes unless the file ends before; the count of bytes, negative on an error.
ssize_t readFully(int file, char* bytes, std::size_t size) {
  std::size_t length = 0;
  while (length < size) {
    const ssize_t count = read(file, bytes + length, size - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return count;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(length);
}

// Reads the rest of the file behind the bytes that `text` begins with.
DWORD readNarrow(int file, std::string_view begin, std::size_t rest, std::string& text) {
  text.resize(begin.size() + rest);
  begin.copy(text.data(), begin.size());
  const ssize_t count = readFully(file, text.data() + begin.size(), rest);
  if (count < 0) return ERROR_GEN_FAILURE;
  text.resize(begin.size() + static_cast<std::size_t>(count));
  return ERROR_SUCCESS;
}

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::size_t kBlock = 32;
constexpr std::size_t kLongestUtf8 = 4;

// The units of the bytes, in the order of this computer's own.
template <bool BigEndian, std::size_t Count>
std::array<char16_t, Count> readUnits(const char* bytes) {
  std::array<char16_t, Count> units;
  std::memcpy(units.data(), bytes, sizeof units);
  if constexpr (BigEndian == (std::endian::native == std::endian::little)) {
    for (char16_t& unit : units) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  }
  return units;
}

template <bool BigEndian>
char16_t unitAt(std::string_view bytes, std::size_t index) {
  return readUnits<BigEndian, 1>(bytes.data() + 2 * index)[0];
}

bool isHighSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDBFF;
}

char* putUtf8(char* out, char32_t c) {
  const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
  return out;
}

// Appends to the first `length` bytes of `text`. Of a pair of units that the bytes cut in two the
// first is left over: the count of bytes that were taken. Driver files in UTF-16 are ASCII but for
// a few strings, so whole blocks of that are narrowed at once.
template <bool BigEndian>
std::size_t appendUtf8(std::string_view bytes, std::string& text, std::size_t& length) {
  const std::size_t units = bytes.size() / 2;
  std::size_t i = 0;
  while (i < units) {
    if (text.size() - length < kBlock * kLongestUtf8) {
      text.resize(text.size() + text.size() / 2 + kBlock * kLongestUtf8);
    }
    char* out = text.data() + length;
    const std::size_t count = std::min(kBlock, units - i);
    if (count == kBlock) {
      const auto block = readUnits<BigEndian, kBlock>(bytes.data() + 2 * i);
      char16_t all = 0;
      for (const char16_t unit : block) all |= unit;
      if (all < 0x80) {
        std::transform(block.begin(), block.end(), out,
                       [](char16_t unit) { return static_cast<char>(unit); });
        i += kBlock;
        length += kBlock;
        continue;
      }
    }
    for (const std::size_t end = i + count; i < end; ++i) {
      char32_t c = unitAt<BigEndian>(bytes, i);
      if (isHighSurrogate(c)) {
        if (i + 1 == units) break;
        const char32_t low = unitAt<BigEndian>(bytes, i + 1);
        const bool pair = low >= 0xDC00 && low <= 0xDFFF;
        c = pair ? 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00) : kReplacement;
        if (pair) ++i;
      } else if (c >= 0xDC00 && c <= 0xDFFF) {
        c = kReplacement;
      }
      out = putUtf8(out, c);
    }
    length = static_cast<std::size_t>(out - text.data());
    if (i + 1 == units && isHighSurrogate(unitAt<BigEndian>(bytes, i))) break;
  }
  return 2 * i;
}

template <bool BigEndian>
DWORD readUtf16(int file, std::string_view begin, std::size_t rest, std::string& text) {
  std::array<char, 32 * 1024> block;
  std::size_t held = begin.copy(block.data(), begin.size());
  std::size_t length = 0;
  while (rest > 0) {
    const std::size_t wanted = std::min(rest, block.size() - held);
    const ssize_t count = readFully(file, block.data() + held, wanted);
    if (count < 0) return ERROR_GEN_FAILURE;
    rest = static_cast<std::size_t>(count) < wanted ? 0 : rest - wanted;
    held += static_cast<std::size_t>(count);
    const std::size_t taken = appendUtf8<BigEndian>({block.data(), held}, text, length);
    held -= taken;
    std::copy_n(block.data() + taken, held, block.data());
  }
  // What is left over is half a character.
  text.resize(length);
  return ERROR_SUCCESS;
}

}  // namespace

DWORD readTextFile(const char* fileName, std::string& text, std::size_t limit) {
  const std::string path = winapi::toNativePath(fileName);
  // Without O_NONBLOCK a named pipe would be waited for.
  const winapi::FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.get() < 0) return winapi::pathError(errno, path);
  struct stat status;
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return ERROR_ACCESS_DENIED;
  const std::size_t size = std::min(static_cast<std::size_t>(status.st_size), limit);
  std::array<char, 4> head;
  const ssize_t headSize = readFully(file.get(), head.data(), std::min(size, head.size()));
  if (headSize < 0) return ERROR_GEN_FAILURE;
  const std::string_view begin(head.data(), static_cast<std::size_t>(headSize));
  const std::size_t rest = size - begin.size();
  if (begin.starts_with("\xFF\xFE"))
    return readUtf16<false>(file.get(), begin.substr(2), rest, text);
  if (begin.starts_with("\xFE\xFF"))
    return readUtf16<true>(file.get(), begin.substr(2), rest, text);
  const bool marked = begin.starts_with("\xEF\xBB\xBF");
  return readNarrow(file.get(), marked ? begin.substr(3) : begin, rest, text);
}

}  // namespace tolvanix
