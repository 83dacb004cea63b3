#pragma once

#include <functional>
#include <string>
#include <vector>

// clang-format off
#include "platform/windows/system_headers.h"
#include <commctrl.h>
// clang-format on

// Looks at the windows of this process from another thread than theirs, as a user would.

namespace tessary::win32 {

inline constexpr DWORD kPatience =
    30000;  // milliseconds until something that is waited for is lost

// True as soon as `condition` is, false when it does not become so in time.
bool WaitUntil(const std::function<bool()>& condition);

// The visible window of this process that has this caption, once it is there; null otherwise.
HWND WaitForWindow(const std::wstring& caption);
// The same for a question, which has no caption.
HWND WaitForQuestion();
bool WaitUntilGone(HWND window);

// Every visible top-level window of this process.
std::vector<HWND> OpenWindows();

// The first control below a window that has this number.
HWND ControlOf(HWND window, int id);
std::string TextOf(HWND window);
RECT PlaceOf(HWND window);
SIZE ClientSizeOf(HWND window);

// Everything that a tree view shows, one line per node: "+" success, "-" error, "!" warning by the
// image, indented by two blanks below its parent.
std::string NodesOf(HWND tree);

// The labels below a window whose text does not fit into them, and the controls that reach out of
// their parent's inside, by their text.
std::vector<std::string> ClippedTexts(HWND window);

// How high the letters of a control's font are, in pixels.
int FontHeightOf(HWND control);
std::string FontNameOf(HWND control);

// The resolution at which this process runs.
int SystemResolution();

// Saves what the screen shows of a window below the build folder as NAME-RESOLUTION.png.
void SavePicture(HWND window, const std::string& name);

}  // namespace tessary::win32
