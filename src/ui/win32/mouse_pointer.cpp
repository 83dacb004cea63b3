#include "ui/win32/mouse_pointer.h"

namespace tessary::win32 {
namespace {

// Hears what the windows of the thread have done; one that has chosen its pointer loses it again.
LRESULT CALLBACK AfterMessage(int code, WPARAM wparam, LPARAM lparam) {
  const auto* done = reinterpret_cast<const CWPRETSTRUCT*>(lparam);
  if (code == HC_ACTION && done->message == WM_SETCURSOR && LOWORD(done->lParam) == HTCLIENT) {
    SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  }
  return CallNextHookEx(nullptr, code, wparam, lparam);
}

}  // namespace

void OperationPointer::Set(MousePointer pointer) {
  const bool hourglass = pointer == MousePointer::kHourglass;
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, hourglass ? IDC_WAIT : IDC_ARROW));
  if (!set_) callers_ = before;
  set_ = true;
  Hold(hourglass);
}

void OperationPointer::Restore() {
  Hold(false);
  if (set_) SetCursor(callers_);
  set_ = false;
}

void OperationPointer::Hold(bool hold) {
  if (hold && !hook_) {
    hook_ = SetWindowsHookExW(WH_CALLWNDPROCRET, AfterMessage, nullptr, GetCurrentThreadId());
  } else if (!hold && hook_) {
    UnhookWindowsHookEx(hook_);
    hook_ = nullptr;
  }
}

}  // namespace tessary::win32
