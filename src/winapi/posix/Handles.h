// The handles of this layer: numbers for objects in one table, so that a handle that is closed, of
// another kind, or none at all, is told apart from a good one and never followed.
#pragma once

#include <memory>

#include "winapi/winapi.h"

namespace tolvanix {

// What a handle stands for. Destroying it closes what it holds.
class HandleObject {
 public:
  HandleObject() = default;
  HandleObject(const HandleObject&) = delete;
  HandleObject& operator=(const HandleObject&) = delete;
  virtual ~HandleObject() = default;
};

HANDLE openHandle(std::unique_ptr<HandleObject> object);

// Null when the handle stands for nothing.
HandleObject* findHandleObject(HANDLE handle);

// Null, with ERROR_INVALID_HANDLE, when the handle stands for no object of that kind.
template <typename Kind>
Kind* handleObject(HANDLE handle) {
  auto* const object = dynamic_cast<Kind*>(findHandleObject(handle));
  if (object == nullptr) SetLastError(ERROR_INVALID_HANDLE);
  return object;
}

// Destroys the object of a good handle.
void destroyHandle(HANDLE handle);

}  // namespace tolvanix
