// Whole files with few system calls.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tolvanix::winapi {

// Closes what it holds on destruction; -1 holds nothing.
class FileDescriptor {
 public:
  explicit FileDescriptor(int opened) : descriptor(opened) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();
  int get() const { return descriptor; }

 private:
  int descriptor;
};

// The bytes of a file; none with errno when it cannot be read. Devices are refused with EINVAL:
// one could be endless.
std::optional<std::string> readWholeFile(const char* path);

// The start of a small file below an open folder, as much as one read gives, in `buffer`; none
// when it cannot be read.
std::optional<std::string_view> readSmallFile(int folder, const char* path, char* buffer,
                                              std::size_t size);

}  // namespace tolvanix::winapi
