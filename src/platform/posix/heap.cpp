// The heap is grown at once by what is wanted. The pages of a little are got in one go, for much
// the system is told to use huge pages, which come one by one but are few.

#include "platform/heap.h"

#if defined(__GLIBC__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#endif

namespace tessary {

#if defined(__GLIBC__) && defined(MADV_POPULATE_WRITE)

HeapPages PrepareHeap(std::size_t bytes) noexcept {
  constexpr int kStep = 1 << 20;
  constexpr int kLargestFromHeap = 32 << 20;  // the most that the C library accepts
  constexpr std::size_t kLittle = std::size_t{4} << 20;
  constexpr std::size_t kMost = std::size_t{1} << 30;
  mallopt(M_MMAP_THRESHOLD, kLargestFromHeap);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  mallopt(M_ARENA_MAX, 1);  // for all threads

  // Where pages come only when they are needed, there may be some to spare.
  const std::size_t size = bytes <= kLittle ? bytes : std::min(2 * bytes, kMost);
  mallopt(M_TOP_PAD, static_cast<int>(size));
  void* const block = std::malloc(kStep);
  mallopt(M_TOP_PAD, kStep);
  if (block == nullptr) return {};
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<std::uintptr_t>(block) + page - 1) / page * page;
  std::free(block);
  const HeapPages pages{reinterpret_cast<void*>(begin), size / page * page};
  if (size <= kLittle) return pages;
  madvise(pages.begin, pages.size, MADV_HUGEPAGE);
  return {};
}

// An older kernel refuses this and gives the pages one by one later.
void GetPages(const HeapPages& pages) noexcept {
  if (pages.size > 0) madvise(pages.begin, pages.size, MADV_POPULATE_WRITE);
}

#else

HeapPages PrepareHeap(std::size_t) noexcept { return {}; }

void GetPages(const HeapPages&) noexcept {}

#endif

}  // namespace tessary
