#include "winapi/posix/base/FileBytes.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "winapi/posix/base/FileDescriptor.h"

namespace tolvanix::winapi {

std::size_t writeFully(int descriptor, const char* bytes, std::size_t size) {
  std::size_t written = 0;
  while (written < size) {
    const ssize_t count = write(descriptor, bytes + written, size - written);
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno == EAGAIN) {
      pollfd poller{descriptor, POLLOUT, 0};
      poll(&poller, 1, -1);
    } else if (errno != EINTR) {
      break;
    }
  }
  return written;
}

ssize_t readUninterrupted(int descriptor, void* buffer, std::size_t size) {
  ssize_t count = 0;
  do {
    count = read(descriptor, buffer, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

std::optional<std::string> readWholeFile(const char* path) {
  const FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode)) {
    errno = ENOTSUP;
    return std::nullopt;
  }
  // One byte more than the file holds, so that its end is met without growing.
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2 + 4096);
    const ssize_t count =
        readUninterrupted(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

MappedFile::MappedFile(const char* path) {
  const FileDescriptor file(open(path, O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0 || status.st_size <= 0) return;
  const auto size = static_cast<std::size_t>(status.st_size);
  const void* const start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
  if (start != MAP_FAILED) bytes = {static_cast<const char*>(start), size};
}

MappedFile::~MappedFile() {
  if (!bytes.empty()) munmap(const_cast<char*>(bytes.data()), bytes.size());
}

std::optional<std::string_view> readSmallFile(int folder, const char* path, char* buffer,
                                              std::size_t size) {
  // Without O_NONBLOCK a named pipe would be waited for.
  const FileDescriptor file(openat(folder, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.get() < 0) return std::nullopt;
  const ssize_t count = readUninterrupted(file.get(), buffer, size);
  if (count < 0) return std::nullopt;
  return std::string_view(buffer, static_cast<std::size_t>(count));
}

}  // namespace tolvanix::winapi
