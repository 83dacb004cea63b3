#pragma once

#include <cstdint>

#include "platform/failure.h"

namespace tessary {

// The number of the Failure that `action` raises, or 0 when it raises none.
template <typename Action>
std::int32_t FailureNumber(Action action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.number();
  }
  return 0;
}

}  // namespace tessary
