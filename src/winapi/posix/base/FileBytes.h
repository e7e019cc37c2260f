// Whole files with few system calls.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tolvanix::winapi {

// read(2), again when a signal interrupts it.
ssize_t readUninterrupted(int descriptor, void* buffer, std::size_t size);

// The bytes of a file; none with errno when it cannot be read. Devices, of which one could be
// endless, are refused with ENOTSUP.
std::optional<std::string> readWholeFile(const char* path);

// Writes all, also to what does not block (O_NONBLOCK is set for every process that has the file
// open, so it may be another's doing): waits then until more is taken. The count of bytes written;
// fewer than all with errno.
std::size_t writeFully(int descriptor, const char* bytes, std::size_t size);

// A file's bytes without a copy of them; empty when it cannot be read.
class MappedFile {
 public:
  explicit MappedFile(const char* path);
  MappedFile(MappedFile&& other) noexcept : bytes(std::exchange(other.bytes, {})) {}
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  MappedFile& operator=(MappedFile&&) = delete;
  ~MappedFile();
  std::string_view text() const { return bytes; }

 private:
  std::string_view bytes;
};

// The start of a small file below an open folder, as much as one read gives, in `buffer`; none
// with errno when it cannot be read.
std::optional<std::string_view> readSmallFile(int folder, const char* path, char* buffer,
                                              std::size_t size);

}  // namespace tolvanix::winapi
