#pragma once

#include <string>

#include "platform/windows/system_headers.h"

namespace tessary::win32 {

// Replaces what the clipboard holds; does nothing while another program uses it.
void PutOnClipboard(HWND window, const std::wstring& text);

}  // namespace tessary::win32
