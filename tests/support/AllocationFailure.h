// Lets one allocation of the test program fail.
#pragma once

#include <cstddef>

namespace tolvanix::test {

// For the life of the object the allocation of that number, counted from 1, among those of that
// size fails. (The C++ runtime ends the program when certain others fail.)
class ScopedAllocationFailure {
 public:
  ScopedAllocationFailure(std::size_t size, std::size_t number);
  ScopedAllocationFailure(const ScopedAllocationFailure&) = delete;
  ScopedAllocationFailure& operator=(const ScopedAllocationFailure&) = delete;
  ~ScopedAllocationFailure();

  // Whether there have been that many.
  static bool happened();
};

}  // namespace tolvanix::test
