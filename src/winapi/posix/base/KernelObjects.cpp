#include "winapi/posix/base/KernelObjects.h"

#include <fcntl.h>

#include <utility>

#include "winapi/posix/base/HandleTable.h"

namespace tolvanix::winapi {

namespace {

HandleTable<std::unique_ptr<KernelObject>, 0x4F>& kernelObjects() {
  static HandleTable<std::unique_ptr<KernelObject>, 0x4F> table;
  return table;
}

// The streams that this process was started with, which have handles even when there is no memory:
// the addresses of these.
class StandardStreams {
 public:
  StandardStreams() {
    for (int fd = 0; fd < kStandardStreams; ++fd) {
      if (fcntl(fd, F_GETFD) < 0) continue;
      std::optional<Stream>& stream = streams[static_cast<std::size_t>(fd)];
      stream.emplace(fd);
      handles[static_cast<std::size_t>(fd)] = &stream;
    }
  }

  // Null for any other handle.
  std::optional<Stream>* find(const void* handle) {
    for (std::optional<Stream>& stream : streams) {
      if (&stream == handle && stream) return &stream;
    }
    return nullptr;
  }

  std::array<HANDLE, kStandardStreams> handles{};

 private:
  std::array<std::optional<Stream>, kStandardStreams> streams;
};

StandardStreams& standardStreams() {
  static StandardStreams streams;
  return streams;
}

}  // namespace

HANDLE openHandle(std::unique_ptr<KernelObject> object) {
  return kernelObjects().open(std::move(object));
}

bool closeHandle(HANDLE handle) {
  if (auto* const stream = standardStreams().find(handle)) {
    stream->reset();
    return true;
  }
  return kernelObjects().close(handle);
}

KernelObject* kernelObject(HANDLE handle) {
  if (auto* const stream = standardStreams().find(handle)) return &**stream;
  const std::unique_ptr<KernelObject>* const object = kernelObjects().find(handle);
  return object != nullptr ? object->get() : nullptr;
}

std::array<HANDLE, kStandardStreams>& standardHandles() {
  return standardStreams().handles;
}

}  // namespace tolvanix::winapi
