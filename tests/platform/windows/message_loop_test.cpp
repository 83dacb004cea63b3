#include "platform/windows/message_loop.h"

#include <gtest/gtest.h>

namespace tessary {
namespace {

constexpr UINT kCount = WM_APP;
constexpr UINT kFlood = WM_APP + 1;
int handled = 0;
int filtered = 0;

LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != kCount && message != kFlood)
    return DefWindowProcW(window, message, wparam, lparam);
  ++handled;
  if (message == kFlood) PostMessageW(window, kFlood, 0, 0);
  return 0;
}

// A window that only gets messages.
class MessageLoopTest : public testing::Test {
 protected:
  MessageLoopTest() {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = HandleMessage;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = L"TessaryMessageLoopTest";
    RegisterClassW(&window_class);
    window_ = CreateWindowExW(0, window_class.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                              nullptr, window_class.hInstance, nullptr);
    handled = 0;
  }
  ~MessageLoopTest() override { DestroyWindow(window_); }

  HWND window_;
  ThreadMessageLoop loop_;
};

TEST_F(MessageLoopTest, ATurnHandlesAllThatWaits) {
  ASSERT_NE(window_, nullptr);
  for (int i = 0; i < 5; ++i) PostMessageW(window_, kCount, 0, 0);
  loop_.TakeTurn();
  EXPECT_EQ(handled, 5);
}

TEST_F(MessageLoopTest, YieldingTakesATurnBeforeLong) {
  PostMessageW(window_, kCount, 0, 0);
  while (handled == 0) loop_.Yield();
  EXPECT_EQ(handled, 1);
}

TEST_F(MessageLoopTest, TheEndOfTheProgramIsLeftForTheCaller) {
  PostMessageW(window_, kCount, 0, 0);
  PostQuitMessage(3);
  loop_.TakeTurn();
  loop_.TakeTurn();
  EXPECT_EQ(handled, 1);
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
  EXPECT_EQ(message.wParam, 3u);
}

LRESULT CALLBACK TakeThreadMessages(int code, WPARAM wparam, LPARAM lparam) {
  const auto& message = *reinterpret_cast<const MSG*>(lparam);
  if (code != MSGF_USER || message.hwnd) return CallNextHookEx(nullptr, code, wparam, lparam);
  ++filtered;
  return TRUE;
}

TEST_F(MessageLoopTest, AFilterTakesMessagesToTheThread) {
  const HHOOK filter =
      SetWindowsHookExW(WH_MSGFILTER, TakeThreadMessages, nullptr, GetCurrentThreadId());
  filtered = 0;
  PostThreadMessageW(GetCurrentThreadId(), kCount, 0, 0);
  PostMessageW(window_, kCount, 0, 0);
  loop_.TakeTurn();
  UnhookWindowsHookEx(filter);
  EXPECT_EQ(filtered, 1);
  EXPECT_EQ(handled, 1);
}

TEST_F(MessageLoopTest, AFloodOfMessagesDoesNotHoldTheWork) {
  PostMessageW(window_, kFlood, 0, 0);
  loop_.TakeTurn();
  EXPECT_GT(handled, 1);
}

}  // namespace
}  // namespace tessary
