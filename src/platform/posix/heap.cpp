// A block of the wanted size is taken from the heap, given its pages and put back, from where
// smaller blocks are then cut. The C library would neither take so large a block from the heap nor
// keep it there by itself.

#include "platform/heap.h"

#if defined(__GLIBC__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#endif

namespace tessary {

#if defined(__GLIBC__) && defined(MADV_POPULATE_WRITE)

void PrepareHeap(std::size_t bytes) noexcept {
  constexpr int kStep = 1 << 20;
  constexpr int kLargestFromHeap = 32 << 20;  // the most that the C library accepts
  mallopt(M_TOP_PAD, kStep);
  mallopt(M_MMAP_THRESHOLD, kLargestFromHeap);
  mallopt(M_TRIM_THRESHOLD, 2 * kLargestFromHeap);

  const std::size_t size = std::min(bytes, std::size_t{kLargestFromHeap} / 2);
  void* const block = std::malloc(size);
  if (block == nullptr) return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<std::uintptr_t>(block) + page - 1) / page * page;
  const auto end = (reinterpret_cast<std::uintptr_t>(block) + size) / page * page;
  // An older kernel refuses this and gives the pages one by one later.
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
  std::free(block);
}

#else

void PrepareHeap(std::size_t) noexcept {}

#endif

}  // namespace tessary
