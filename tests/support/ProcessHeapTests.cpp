#include "foundation/support/ProcessHeap.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace iconwright {
namespace {

#if !defined(__SANITIZE_ADDRESS__)

/// Whether the mapping holding `address` is advised for huge pages ("hg" among its flags).
bool advisedForHugePages(const void* address) {
  std::ifstream maps("/proc/self/smaps");
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  bool inside = false;
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t start = 0;
    std::uintptr_t end = 0;
    if (std::sscanf(line.c_str(), "%lx-%lx ", &start, &end) == 2) {
      inside = start <= wanted && wanted < end;
    } else if (inside && line.starts_with("VmFlags:")) {
      return line.find(" hg") != std::string::npos;
    }
  }
  return false;
}

TEST(ProcessHeap, LaterBlocksComeFromTheAdvisedSpanWithoutGrowingTheHeap) {
  prepareHeapForLargeWork(std::size_t{64} << 20);
  const void* top = sbrk(0);
  void* block = std::malloc(std::size_t{24} << 20);  // larger than the usual mapping threshold
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(sbrk(0), top) << "the block should fit in the reserved span";
  EXPECT_LT(block, top) << "the block should come from the heap, not from a mapping of its own";
  if (std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled")) {
    EXPECT_TRUE(advisedForHugePages(static_cast<char*>(block) + (std::size_t{12} << 20)));
  }
  std::free(block);
  // A smaller request later adds nothing.
  prepareHeapForLargeWork(std::size_t{32} << 20);
  EXPECT_EQ(sbrk(0), top);
}

#else

TEST(ProcessHeap, LaterBlocksComeFromTheAdvisedSpanWithoutGrowingTheHeap) {
  GTEST_SKIP() << "the address sanitizer keeps a heap of its own";
}

#endif

}  // namespace
}  // namespace iconwright
