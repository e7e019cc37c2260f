// What handles of the process family are for: streams and child processes.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "winapi/posix/base/FileDescriptor.h"
#include "winapi/winapi.h"

namespace tolvanix::winapi {

// What CloseHandle closes.
class KernelObject {
 public:
  KernelObject() = default;
  KernelObject(const KernelObject&) = delete;
  KernelObject& operator=(const KernelObject&) = delete;
  virtual ~KernelObject() = default;
};

// A file or one end of a pipe.
class Stream : public KernelObject {
 public:
  Stream(FileDescriptor open, bool forChildren)
      : owned(std::move(open)), descriptor(owned.get()), inherits(forChildren) {}
  // One of the process's own standard streams, which stays open.
  explicit Stream(int standard) : descriptor(standard), inherits(true) {}

  int get() const { return descriptor; }
  bool isInherited() const { return inherits; }
  void setInherited(bool forChildren) { inherits = forChildren; }

 private:
  FileDescriptor owned;
  int descriptor;
  bool inherits;
};

HANDLE openHandle(std::unique_ptr<KernelObject> object);
// False for what is no open handle.
bool closeHandle(HANDLE handle);

// Null for what is no open handle.
KernelObject* kernelObject(HANDLE handle);

// Null, with ERROR_INVALID_HANDLE, when the handle is not that of an object of that kind.
template <typename Kind>
Kind* handleObject(HANDLE handle) {
  auto* const found = dynamic_cast<Kind*>(kernelObject(handle));
  if (found == nullptr) SetLastError(ERROR_INVALID_HANDLE);
  return found;
}

// The handles of standard input, output and error, by file descriptor. Null for a stream that was
// not open when this process started.
std::array<HANDLE, kStandardStreams>& standardHandles();

}  // namespace tolvanix::winapi
