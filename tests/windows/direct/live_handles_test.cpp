// Whatever a window takes from the system is given back with it.

#include <gtest/gtest.h>

#include "ui/win32/handles.h"
#include "ui/win32/progress_window.h"
#include "ui/win32/protocol_window.h"

namespace tessary::win32 {
namespace {

constexpr int kRounds = 100;
constexpr HandleKind kKinds[] = {HandleKind::kWindow, HandleKind::kFont, HandleKind::kIcon,
                                 HandleKind::kImageList, HandleKind::kActivationContext};

void ExpectNoneLive() {
  for (const HandleKind kind : kKinds) EXPECT_EQ(LiveHandles(kind), 0) << static_cast<int>(kind);
}

HINSTANCE Own() { return GetModuleHandleW(nullptr); }

TEST(LiveHandles, AreGoneWithProgressWindows) {
  ThreadMessageLoop loop;
  for (int i = 0; i < kRounds; ++i) {
    WindowsProgressWindow window(Own(), loop);
    window.Init("Berichtsvergleich", "List & Label");
    window.Process("Berichtsdatei wird gelesen");
    EXPECT_GT(LiveHandles(HandleKind::kWindow), 0);
  }
  ExpectNoneLive();
}

TEST(LiveHandles, AreGoneWithProtocolWindows) {
  ResultDictionary errors;
  errors.Add("Bericht", {"Meldung"});
  const ProtocolTree tree(errors, {});
  const RepairGuide guide = protocol_window::RepairGuideOf("C:\\Programme");
  for (int i = 0; i < kRounds; ++i) {
    const ProtocolWindow window(Own(), nullptr, tree, guide);
    RECT place{0, 0, 900, 900};
    SendMessageW(window.window(), WM_DPICHANGED, MAKELONG(144, 144),
                 reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(LiveHandles(HandleKind::kFont), 3);
  }
  ExpectNoneLive();
}

TEST(LiveHandles, AreGoneWithTheirOwner) {
  const HWND owner = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10,
                                     nullptr, nullptr, Own(), nullptr);
  SetActiveWindow(owner);
  {
    ThreadMessageLoop loop;
    WindowsProgressWindow window(Own(), loop);
    DestroyWindow(owner);
    EXPECT_EQ(LiveHandles(HandleKind::kWindow), 0);
    window.Process("Berichtsdatei wird gelesen");
    window.StopProgress();
  }
  ExpectNoneLive();
}

}  // namespace
}  // namespace tessary::win32
