#include "platform/heap.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <cstring>
#include <memory>
#include <vector>

namespace tessary {
namespace {

// Blocks of 4 KB, every byte of which has been written.
std::vector<std::unique_ptr<char[]>> FilledBlocks(std::size_t count) {
  std::vector<std::unique_ptr<char[]>> blocks(count);
  for (auto& block : blocks) {
    block = std::make_unique_for_overwrite<char[]>(4096);
    std::memset(block.get(), 1, 4096);
  }
  return blocks;
}

#if defined(__GLIBC__) && !defined(TESSARY_SANITIZED)
long PageFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

TEST(Heap, PagesAreThereBeforeTheyAreNeeded) {
  if (madvise(nullptr, 0, MADV_POPULATE_WRITE) != 0) GTEST_SKIP() << "too old a kernel";
  GetPages(PrepareHeap(std::size_t{4} << 20));
  const long before = PageFaults();
  const auto blocks = FilledBlocks(1024);
  EXPECT_LT(PageFaults() - before, 256) << "1,024 pages were filled";
}
#endif

TEST(Heap, TakesAnySize) {
  for (const std::size_t bytes :
       {std::size_t{0}, std::size_t{1}, std::size_t{4096}, ~std::size_t{0}}) {
    GetPages(PrepareHeap(bytes));
    EXPECT_EQ(FilledBlocks(4)[3][4095], 1) << bytes;
  }
}

}  // namespace
}  // namespace tessary
