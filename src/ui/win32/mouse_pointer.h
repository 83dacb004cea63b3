#pragma once

#include "manager/user_interface.h"
#include "platform/windows/system_headers.h"

namespace tessary::win32 {

// The mouse pointer during an operation. While it is the hourglass, it stays so over all windows
// of the thread, which otherwise would set their own whenever the mouse moves.
class OperationPointer {
 public:
  OperationPointer() = default;
  ~OperationPointer() { Restore(); }
  OperationPointer(const OperationPointer&) = delete;
  OperationPointer& operator=(const OperationPointer&) = delete;

  void Set(MousePointer pointer);
  // Gives back what was there before the first Set.
  void Restore();

 private:
  void Hold(bool hold);

  HCURSOR callers_ = nullptr;
  HHOOK hook_ = nullptr;
  bool set_ = false;
};

}  // namespace tessary::win32
