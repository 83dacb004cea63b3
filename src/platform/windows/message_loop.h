#pragma once

#include "platform/message_loop.h"
#include "platform/windows/system_headers.h"

namespace tessary {

// Lets the windows of the calling thread handle their messages, though not at every call.
class ThreadMessageLoop final : public MessageLoop {
 public:
  // What the loop costs between two turns is counting, and a look at the clock now and then. A
  // request to end the program is left for the caller's own loop.
  void Yield() override {
    constexpr unsigned kCallsPerLook = 32;  // These take some microseconds.
    constexpr DWORD kTurnDistance = 10;     // Milliseconds.
    if (++calls_ % kCallsPerLook != 0) return;
    if (GetTickCount() - last_turn_ >= kTurnDistance) TakeTurn();
  }

  // Handles the messages that wait, at once. Message filters of the thread see them first, with
  // the code MSGF_USER.
  void TakeTurn();

 private:
  unsigned calls_ = 0;
  DWORD last_turn_ = GetTickCount();
};

}  // namespace tessary
