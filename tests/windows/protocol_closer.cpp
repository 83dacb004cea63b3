#include "windows/protocol_closer.h"

#include <string_view>

namespace tessary::win32 {

ProtocolCloser::ProtocolCloser(DWORD process)
    : process_(process), thread_([this] {
        for (; !ending_; Sleep(20)) EnumWindows(Close, reinterpret_cast<LPARAM>(this));
      }) {}

ProtocolCloser::~ProtocolCloser() {
  ending_ = true;
  thread_.join();
}

BOOL CALLBACK ProtocolCloser::Close(HWND window, LPARAM closer) {
  const DWORD wanted = reinterpret_cast<ProtocolCloser*>(closer)->process_;
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  wchar_t title[40];
  const int size = GetWindowTextW(window, title, static_cast<int>(std::size(title)));
  const std::wstring_view shown(title, static_cast<std::size_t>(size));
  const bool is_wanted = wanted == 0 || process == wanted;
  if (is_wanted && IsWindowVisible(window) && shown == L"TALVERO Fehlerprotokoll") {
    PostMessageW(window, WM_CLOSE, 0, 0);
  }
  return TRUE;
}

}  // namespace tessary::win32
