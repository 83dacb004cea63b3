// Everything that not every supported system has is looked up when it is needed.

#include "ui/win32/scaling.h"

#include <algorithm>

namespace tessary::win32 {
namespace {

template <class Function>
Function FromUser32(const char* name) {
  const HMODULE library = GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

using SetContextFunction = void*(WINAPI*)(void*);

SetContextFunction SetContext() {
  return FromUser32<SetContextFunction>("SetThreadDpiAwarenessContext");
}

}  // namespace

MonitorScaling::MonitorScaling() {
  // The values of the contexts "per monitor, version 2" and "per monitor".
  constexpr INT_PTR kPerMonitorContexts[] = {-4, -3};
  const auto set = SetContext();
  if (!set) return;
  for (const INT_PTR context : kPerMonitorContexts) {
    before_ = set(reinterpret_cast<void*>(context));
    if (before_) return;
  }
}

MonitorScaling::~MonitorScaling() {
  if (before_) SetContext()(before_);
}

int ResolutionOf(HWND window) {
  const auto of_window = FromUser32<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
  if (of_window) {
    const UINT resolution = of_window(window);
    if (resolution != 0) return static_cast<int>(resolution);
  }
  const HDC device = GetDC(window);
  const int resolution = GetDeviceCaps(device, LOGPIXELSY);
  ReleaseDC(window, device);
  return resolution;
}

void KeepFromAutomaticScaling(HWND dialog) {
  constexpr int kDisableAll = 1;
  const auto set = FromUser32<BOOL(WINAPI*)(HWND, int, int)>("SetDialogDpiChangeBehavior");
  if (set) set(dialog, kDisableAll, kDisableAll);
}

SIZE OuterSize(HWND window, SIZE client, int resolution) {
  using AdjustFunction = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);
  const auto adjust = FromUser32<AdjustFunction>("AdjustWindowRectExForDpi");
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
  const auto extended = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
  RECT frame{0, 0, client.cx, client.cy};
  if (adjust) {
    adjust(&frame, style, FALSE, extended, static_cast<UINT>(resolution));
  } else {
    AdjustWindowRectEx(&frame, style, FALSE, extended);
  }
  return {frame.right - frame.left, frame.bottom - frame.top};
}

void SetClientSize(HWND window, SIZE client, int resolution) {
  const SIZE outer = OuterSize(window, client, resolution);
  const RECT area = WorkAreaOf(window);
  SetWindowPos(window, nullptr, 0, 0, std::min(outer.cx, area.right - area.left),
               std::min(outer.cy, area.bottom - area.top),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

RECT WorkAreaOf(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

void Centre(HWND window, HWND owner) {
  const bool on_owner = owner && IsWindowVisible(owner) && !IsIconic(owner);
  const RECT area = WorkAreaOf(on_owner ? owner : nullptr);
  RECT target = area;
  if (on_owner) GetWindowRect(owner, &target);
  RECT own{};
  GetWindowRect(window, &own);
  const LONG width = own.right - own.left;
  const LONG height = own.bottom - own.top;
  const LONG x = (target.left + target.right - width) / 2;
  const LONG y = (target.top + target.bottom - height) / 2;
  SetWindowPos(window, nullptr, std::max(area.left, std::min(x, area.right - width)),
               std::max(area.top, std::min(y, area.bottom - height)), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace tessary::win32
