#include "platform/workers.h"

#if defined(__linux__)
#include <sched.h>
#endif

#include <algorithm>

namespace tessary {

// The C++ library would read a file for that.
int SpareProcessors(int most) {
  int processors = 1;
#if defined(__linux__)
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) == 0) processors = CPU_COUNT(&allowed);
#endif
  return std::clamp(processors - 1, 0, most);
}

}  // namespace tessary
