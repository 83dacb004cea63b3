#pragma once

#include <sys/stat.h>

namespace tessary {

// Gives the open file `to` the owner, permissions and extended attributes of the open file `from`,
// whose status is handed in. False when one of them cannot be given; attributes that only the
// system itself may set do not count.
bool CopyAttributes(int from, const struct stat& status, int to);

}  // namespace tessary
