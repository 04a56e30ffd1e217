#include "support/Allocations.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

using morvelune::testing::allocations;

void* operator new(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  ++allocations.count;
  allocations.bytes += malloc_usable_size(memory);
  allocations.peakBytes = std::max(allocations.peakBytes, allocations.bytes);
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) allocations.bytes -= malloc_usable_size(memory);
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  operator delete(memory);
}
