// The one owner of file descriptors.
#pragma once

#include <utility>

namespace tolvanix::winapi {

constexpr int kStandardStreams = 3;

// Closes what it holds on destruction; -1 holds nothing.
class FileDescriptor {
 public:
  explicit FileDescriptor(int opened = -1) : descriptor(opened) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor(std::exchange(other.descriptor, -1)) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor& operator=(FileDescriptor&&) = delete;
  ~FileDescriptor();

  int get() const { return descriptor; }

 private:
  int descriptor;
};

// Another one for the same file, above those of the standard streams and closed in every child.
// None, with errno, when there is no other.
FileDescriptor duplicateAboveStandard(int descriptor);

// Takes one that was just opened, which has a standard stream's number when that is not open.
FileDescriptor aboveStandard(int opened);

}  // namespace tolvanix::winapi
