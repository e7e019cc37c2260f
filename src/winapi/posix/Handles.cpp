#include "winapi/posix/Handles.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tolvanix {
namespace {

// Handles are multiples of four from four on; free places are used again.
constexpr std::size_t kHandleStep = 4;

std::vector<std::unique_ptr<HandleObject>>& table() {
  static std::vector<std::unique_ptr<HandleObject>> objects;
  return objects;
}

}  // namespace

HANDLE openHandle(std::unique_ptr<HandleObject> object) {
  auto& objects = table();
  auto place = std::find(objects.begin(), objects.end(), nullptr);
  if (place == objects.end()) place = objects.emplace(place);
  *place = std::move(object);
  const auto index = static_cast<std::size_t>(place - objects.begin());
  return reinterpret_cast<HANDLE>((index + 1) * kHandleStep);
}

HandleObject* findHandleObject(HANDLE handle) {
  const auto value = reinterpret_cast<ULONG_PTR>(handle);
  const std::size_t index = value / kHandleStep - 1;  // of null: past every end
  if (value % kHandleStep != 0 || index >= table().size()) return nullptr;
  return table()[index].get();
}

void destroyHandle(HANDLE handle) {
  table()[reinterpret_cast<ULONG_PTR>(handle) / kHandleStep - 1].reset();
}

}  // namespace tolvanix
