#pragma once

#include <cstddef>

namespace tessary {

// Prepares the heap for a run that will soon need some `bytes`, so that the system need not be
// asked for them page by page. Only a hint: without effect where the system knows no such thing.
// Never fails. Memory that is freed later, even after 0 bytes were asked for, stays with the
// process, which suits a command but not the component, whose process belongs to another program.
void PrepareHeap(std::size_t bytes) noexcept;

}  // namespace tessary
