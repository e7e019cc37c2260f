// The program-wide allocation functions of a test program.
#include "support/AllocationFailure.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t failingSize = 0;
std::size_t remaining = 0;  // allocations of that size up to the one that fails; 0 for none

void* allocate(std::size_t size) {
  if (remaining != 0 && size == failingSize && --remaining == 0) return nullptr;
  return std::malloc(size != 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*selector*/) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*selector*/) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace tolvanix::test {

ScopedAllocationFailure::ScopedAllocationFailure(std::size_t size, std::size_t number) {
  failingSize = size;
  remaining = number;
}

ScopedAllocationFailure::~ScopedAllocationFailure() {
  remaining = 0;
}

bool ScopedAllocationFailure::happened() {
  return remaining == 0;
}

}  // namespace tolvanix::test
