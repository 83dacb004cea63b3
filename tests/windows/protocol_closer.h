#pragma once

#include <windows.h>

#include <atomic>
#include <thread>

namespace tessary::win32 {

// Closes every error protocol that a process shows, as a user would, for as long as it lives.
class ProtocolCloser {
 public:
  // 0 is any process of the desktop.
  explicit ProtocolCloser(DWORD process = GetCurrentProcessId());
  ~ProtocolCloser();
  ProtocolCloser(const ProtocolCloser&) = delete;
  ProtocolCloser& operator=(const ProtocolCloser&) = delete;

 private:
  static BOOL CALLBACK Close(HWND window, LPARAM closer);

  const DWORD process_;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

}  // namespace tessary::win32
