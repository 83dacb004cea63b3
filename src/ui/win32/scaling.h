#pragma once

#include "platform/windows/system_headers.h"

// Sizes are given for 96 dots per inch, which is 100 %, and scaled to what the monitor of a window
// has, also inside a program that knows nothing of scaling.

namespace tessary::win32 {

// While it lives, windows that this thread makes are told the resolution of their monitor, and
// coordinates are those of the screen itself. Systems without that notion are left as they are.
class MonitorScaling {
 public:
  MonitorScaling();
  ~MonitorScaling();
  MonitorScaling(const MonitorScaling&) = delete;
  MonitorScaling& operator=(const MonitorScaling&) = delete;

 private:
  void* before_ = nullptr;
};

// The resolution for which a window is to be drawn, in dots per inch.
int ResolutionOf(HWND window);

// Leaves it to the window to follow a change of resolution; the system would move the controls of
// dialogs by rules of its own.
void KeepFromAutomaticScaling(HWND dialog);

inline int Scaled(int value, int resolution) { return MulDiv(value, resolution, 96); }

// The size of a whole window whose inside has the given one.
SIZE OuterSize(HWND window, SIZE client, int resolution);
// Gives a window's inside a size, as far as the work area has room for the window.
void SetClientSize(HWND window, SIZE client, int resolution);

// The room that a window's monitor leaves to programs; that of the main monitor without a window.
RECT WorkAreaOf(HWND window);

// Centres a window on its owner, or in the work area where there is none to be seen, and keeps it
// inside the work area.
void Centre(HWND window, HWND owner);

}  // namespace tessary::win32
