#include "ui/win32/handles.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace tessary::win32 {
namespace {

std::array<std::atomic<long>, 5> live{};

}  // namespace

long LiveHandles(HandleKind kind) { return live[static_cast<std::size_t>(kind)]; }

void CountHandle(HandleKind kind, long difference) {
  live[static_cast<std::size_t>(kind)] += difference;
}

}  // namespace tessary::win32
