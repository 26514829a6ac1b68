#include "foundation/support/ProcessHeap.hpp"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace iconwright {

// The address sanitizer's allocator keeps a heap of its own, so there is nothing to set up.
#if !defined(__SANITIZE_ADDRESS__)

namespace {

constexpr std::uintptr_t hugePage = std::uintptr_t{2} << 20;
// Below the largest threshold for mappings, so that each block comes from the heap.
constexpr std::size_t blockSize = std::size_t{16} << 20;

std::size_t reserved = 0;

void growAndAdvise(std::size_t bytes) {
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  // The heap grows by blocks that are freed at once into one free span at its top. The span
  // is advised only then, so that nothing touches it before real allocations do.
  const auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
  std::vector<void*> blocks;
  blocks.reserve(bytes / blockSize + 1);
  for (std::size_t grown = 0; grown < bytes; grown += blockSize) {
    void* block = std::malloc(blockSize);
    if (block == nullptr) break;
    blocks.push_back(block);
  }
  const auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
  for (void* block : blocks) std::free(block);
  const std::uintptr_t first = (before + hugePage - 1) & ~(hugePage - 1);
  const std::uintptr_t last = after & ~(hugePage - 1);
  if (before != std::uintptr_t(-1) && last > first) {
    madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
  }
}

}  // namespace

void prepareHeapForLargeWork(std::size_t bytes) {
  if (bytes <= reserved) return;
  reserved = bytes;
  growAndAdvise(bytes);
}

#else

void prepareHeapForLargeWork(std::size_t) {}

#endif

}  // namespace iconwright
