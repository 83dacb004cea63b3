#pragma once

#include "platform/windows/system_headers.h"

namespace tessary::win32 {

// While it lives, controls that this thread makes are of version 6 of the common controls, as the
// module's own manifest asks for, whatever the program uses otherwise.
class CommonControls {
 public:
  explicit CommonControls(HINSTANCE module);
  ~CommonControls();
  CommonControls(const CommonControls&) = delete;
  CommonControls& operator=(const CommonControls&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace tessary::win32
