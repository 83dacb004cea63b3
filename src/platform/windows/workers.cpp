#include "platform/workers.h"

#include <algorithm>
#include <thread>

namespace tessary {

int SpareProcessors(int most) {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()) - 1, 0, most);
}

}  // namespace tessary
