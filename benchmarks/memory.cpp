// Replaces the allocation functions of the whole program, the shared library included, by ones that
// count. Blocks count as large as the allocator makes them.
#include "benchmarks/memory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

bool isCounting = false;  // off while time is measured
std::size_t live = 0;
std::size_t peak = 0;

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(std::max<std::size_t>(size, 1));
  if (block == nullptr) throw std::bad_alloc();
  if (isCounting) peak = std::max(peak, live += malloc_usable_size(block));
  return block;
}

void operator delete(void* block) noexcept {
  if (isCounting) live -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

std::size_t bench::peakDuring(const std::function<void()>& work) {
  live = peak = 0;
  isCounting = true;
  work();
  isCounting = false;
  return peak;
}

std::size_t bench::keptBy(const std::function<void()>& work) {
  peakDuring(work);
  return live;
}
