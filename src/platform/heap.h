#pragma once

#include <cstddef>

namespace tessary {

// Memory of the heap whose pages the system has not been asked for yet.
struct HeapPages {
  void* begin = nullptr;
  std::size_t size = 0;  // in bytes
};

// Prepares the heap for a run that will soon need some `bytes`, so that the system need not be
// asked for them piece by piece, and returns what GetPages may get at once. Only a hint: without
// effect where the system knows no such thing. Never fails. Memory that is freed later, even after
// 0 bytes were asked for, stays with the process, which suits a command but not the component,
// whose process belongs to another program.
HeapPages PrepareHeap(std::size_t bytes) noexcept;

// Gets the pages, which takes as long as a short run's start; on any thread, also while the heap
// is used. Never fails.
void GetPages(const HeapPages& pages) noexcept;

}  // namespace tessary
