// Handles as tagged numbers: a handle that is none, is closed or belongs to another family is
// found out without touching memory.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "winapi/winapi.h"

namespace tolvanix::winapi {

// `Tag` is the family's number, at most 15 bits; what is open takes the numbers from 1.
template <typename Object, ULONG_PTR Tag>
class HandleTable {
 public:
  void* open(Object object) {
    std::size_t slot = 0;
    while (slot < objects.size() && objects[slot].has_value()) ++slot;
    if (slot == objects.size()) objects.emplace_back();
    objects[slot] = std::move(object);
    return reinterpret_cast<void*>(kFirst + slot);  // NOLINT(performance-no-int-to-ptr): a number
  }

  // Null for anything that is not open here.
  Object* find(const void* handle) {
    const auto number = reinterpret_cast<ULONG_PTR>(handle);
    if (number < kFirst || number - kFirst >= objects.size()) return nullptr;
    std::optional<Object>& object = objects[number - kFirst];
    return object ? &*object : nullptr;
  }

  bool close(const void* handle) {
    if (find(handle) == nullptr) return false;
    objects[reinterpret_cast<ULONG_PTR>(handle) - kFirst].reset();
    return true;
  }

 private:
  static constexpr ULONG_PTR kFirst = Tag << 16 | 1;
  std::vector<std::optional<Object>> objects;
};

}  // namespace tolvanix::winapi
