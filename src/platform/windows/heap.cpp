#include "platform/heap.h"

namespace tessary {

void PrepareHeap(std::size_t) noexcept {}

}  // namespace tessary
