#include "winapi/posix/base/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

namespace tolvanix::winapi {

FileDescriptor::~FileDescriptor() {
  if (descriptor >= 0) close(descriptor);
}

FileDescriptor duplicateAboveStandard(int descriptor) {
  return FileDescriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, kStandardStreams));
}

FileDescriptor aboveStandard(int opened) {
  FileDescriptor descriptor(opened);
  return opened < kStandardStreams ? duplicateAboveStandard(opened) : std::move(descriptor);
}

}  // namespace tolvanix::winapi
