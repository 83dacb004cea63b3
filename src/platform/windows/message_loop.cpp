#include "platform/windows/message_loop.h"

namespace tessary {

void ThreadMessageLoop::TakeTurn() {
  // A window that asks for messages as fast as it handles them must not keep the work waiting.
  constexpr DWORD kLongestTurn = 100;
  const DWORD start = GetTickCount();
  MSG message;
  while (GetTickCount() - start < kLongestTurn &&
         PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    // Messages to the thread itself, which no window gets, are for the program's filter.
    if (CallMsgFilterW(&message, MSGF_USER)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  last_turn_ = GetTickCount();
}

}  // namespace tessary
