#include "core/lint/CountedAllocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocated;

}  // namespace

std::size_t mirvel::testdata::allocatedBytes() {
  return allocated;
}

void* operator new(std::size_t size) {
  allocated += size;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
