#include "winapi/posix/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <string_view>

namespace tolvanix {

namespace {

class Descriptor {
 public:
  explicit Descriptor(int opened) : number(opened) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number >= 0) close(number);
  }
  int get() const { return number; }

 private:
  int number;
};

bool folderExists(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos || slash == 0) return true;
  return access(path.substr(0, slash).c_str(), F_OK) == 0;
}

DWORD openError(int error, const std::string& path) {
  switch (error) {
    case ENOENT:
      return folderExists(path) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
    case ENOTDIR:
      return ERROR_PATH_NOT_FOUND;
    case EMFILE:
    case ENFILE:
      return ERROR_TOO_MANY_OPEN_FILES;
    case ENAMETOOLONG:
      return ERROR_FILENAME_EXCED_RANGE;
    default:
      return ERROR_ACCESS_DENIED;
  }
}

DWORD readBytes(const char* fileName, std::string& bytes) {
  std::string path = fileName;
  std::replace(path.begin(), path.end(), '\\', '/');
  // Without O_NONBLOCK a named pipe would be waited for.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.get() < 0) return openError(errno, path);
  struct stat status;
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return ERROR_ACCESS_DENIED;
  bytes.resize(static_cast<std::size_t>(status.st_size));
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t count = read(file.get(), bytes.data() + length, bytes.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return ERROR_GEN_FAILURE;
    if (count == 0) break;  // the file became shorter meanwhile
    length += static_cast<std::size_t>(count);
  }
  bytes.resize(length);
  return ERROR_SUCCESS;
}

constexpr char32_t kReplacement = 0xFFFD;
constexpr std::size_t kBlock = 16;
constexpr std::size_t kLongestUtf8 = 4;

template <bool BigEndian>
char16_t unitAt(const char* bytes, std::size_t index) {
  const auto first = static_cast<unsigned char>(bytes[2 * index]);
  const auto second = static_cast<unsigned char>(bytes[2 * index + 1]);
  return static_cast<char16_t>(BigEndian ? first << 8 | second : second << 8 | first);
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

// Driver files in UTF-16 are ASCII but for a few strings: whole blocks of it are narrowed at once.
template <bool BigEndian>
void utf16ToUtf8(std::string_view bytes, std::string& text) {
  const std::size_t units = bytes.size() / 2;
  if (text.size() < units + kBlock * kLongestUtf8) text.resize(units + kBlock * kLongestUtf8);
  std::size_t length = 0;
  for (std::size_t i = 0; i < units;) {
    if (text.size() - length < kBlock * kLongestUtf8) text.resize(text.size() + text.size() / 2);
    char* out = text.data() + length;
    const std::size_t count = std::min(kBlock, units - i);
    if (count == kBlock) {
      unsigned all = 0;
      for (std::size_t k = 0; k < kBlock; ++k) {
        const char16_t unit = unitAt<BigEndian>(bytes.data(), i + k);
        all |= unit;
        out[k] = static_cast<char>(unit);
      }
      if (all < 0x80) {
        i += kBlock;
        length += kBlock;
        continue;
      }
    }
    for (const std::size_t end = i + count; i < end;) {
      char32_t c = unitAt<BigEndian>(bytes.data(), i++);
      if (c >= 0xD800 && c <= 0xDFFF) {
        const char32_t low = i < units ? unitAt<BigEndian>(bytes.data(), i) : 0;
        const bool pair = c <= 0xDBFF && low >= 0xDC00 && low <= 0xDFFF;
        c = pair ? 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00) : kReplacement;
        if (pair) ++i;
      }
      out = putUtf8(out, c);
    }
    length = static_cast<std::size_t>(out - text.data());
  }
  text.resize(length);
}

}  // namespace

DWORD readTextFile(const char* fileName, std::string& text) {
  const DWORD error = readBytes(fileName, text);
  if (error != ERROR_SUCCESS) return error;
  const std::string_view mark = std::string_view(text).substr(0, 3);
  if (mark.starts_with("\xFF\xFE") || mark.starts_with("\xFE\xFF")) {
    const bool bigEndian = mark.starts_with("\xFE\xFF");
    std::string bytes;
    bytes.swap(text);
    const std::string_view units = std::string_view(bytes).substr(2);
    bigEndian ? utf16ToUtf8<true>(units, text) : utf16ToUtf8<false>(units, text);
  } else if (mark == "\xEF\xBB\xBF") {
    text.erase(0, mark.size());
  }
  return ERROR_SUCCESS;
}

}  // namespace tolvanix
