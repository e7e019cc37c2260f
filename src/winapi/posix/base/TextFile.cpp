#include "winapi/posix/base/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "text/Utf8.h"
#include "winapi/posix/base/FileBytes.h"
#include "winapi/posix/base/FileDescriptor.h"
#include "winapi/posix/base/Paths.h"
#include "winapi/posix/base/Utf16.h"

namespace tolvanix::winapi {

namespace {

// Fills `size` bytes unless the file ends before; the count of bytes, negative on an error.
ssize_t readFully(int file, char* bytes, std::size_t size) {
  std::size_t length = 0;
  while (length < size) {
    const ssize_t count = readUninterrupted(file, bytes + length, size - length);
    if (count < 0) return count;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(length);
}

// Reads the rest of the file after the bytes that `text` begins with.
DWORD readNarrow(int file, std::string_view begin, std::size_t rest, std::string& text) {
  text.resize(begin.size() + rest);
  begin.copy(text.data(), begin.size());
  const ssize_t count = readFully(file, text.data() + begin.size(), rest);
  if (count < 0) return ERROR_GEN_FAILURE;
  text.resize(begin.size() + static_cast<std::size_t>(count));
  return ERROR_SUCCESS;
}

DWORD readUtf16(int file, ByteOrder order, std::string_view begin, std::size_t rest,
                std::string& text) {
  std::array<char, 32768> block;
  std::size_t held = begin.copy(block.data(), begin.size());
  text.clear();
  while (rest > 0) {
    const std::size_t wanted = std::min(rest, block.size() - held);
    const ssize_t count = readFully(file, block.data() + held, wanted);
    if (count < 0) return ERROR_GEN_FAILURE;
    rest = static_cast<std::size_t>(count) < wanted ? 0 : rest - wanted;
    held += static_cast<std::size_t>(count);
    const std::size_t taken = appendUtf16({block.data(), held}, order, text);
    held -= taken;
    std::copy_n(block.data() + taken, held, block.data());
  }
  // What is left over is half a pair, or half a unit.
  if (held >= sizeof(char16_t)) appendUtf8(text, kReplacementCharacter);
  return ERROR_SUCCESS;
}

}  // namespace

DWORD readTextFile(const char* fileName, std::string& text, BigEndian bigEndian,
                   std::size_t limit) {
  const std::string path = toNativePath(fileName);
  // Without O_NONBLOCK a named pipe would be waited for.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.get() < 0) return pathError(errno, path);
  struct stat status;
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return ERROR_ACCESS_DENIED;
  const std::size_t size = std::min(static_cast<std::size_t>(status.st_size), limit);
  std::array<char, 4> head;
  const ssize_t headSize = readFully(file.get(), head.data(), std::min(size, head.size()));
  if (headSize < 0) return ERROR_GEN_FAILURE;
  const std::string_view begin(head.data(), static_cast<std::size_t>(headSize));
  const std::size_t rest = size - begin.size();
  if (begin.starts_with("\xFF\xFE")) {
    return readUtf16(file.get(), ByteOrder::kLittleEndian, begin.substr(2), rest, text);
  }
  if (begin.starts_with("\xFE\xFF")) {
    if (bigEndian == BigEndian::kRefused) return ERROR_INVALID_DATA;
    return readUtf16(file.get(), ByteOrder::kBigEndian, begin.substr(2), rest, text);
  }
  const bool marked = begin.starts_with("\xEF\xBB\xBF");
  return readNarrow(file.get(), marked ? begin.substr(3) : begin, rest, text);
}

}  // namespace tolvanix::winapi
