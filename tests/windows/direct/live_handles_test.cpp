// Whatever a window takes from the system is given back with it.

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <optional>

#include "ui/win32/common_controls.h"
#include "ui/win32/handles.h"
#include "ui/win32/progress_window.h"
#include "ui/win32/protocol_window.h"

namespace tessary::win32 {
namespace {

constexpr int kRounds = 100;
constexpr int kLongRounds = 1000;
constexpr HandleKind kKinds[] = {HandleKind::kWindow, HandleKind::kFont, HandleKind::kIcon,
                                 HandleKind::kImageList, HandleKind::kActivationContext};

void ExpectNoneLive() {
  for (const HandleKind kind : kKinds) EXPECT_EQ(LiveHandles(kind), 0) << static_cast<int>(kind);
}

HINSTANCE Own() { return GetModuleHandleW(nullptr); }

void UseAll(ProgressWindow& window) {
  window.Init("Berichtsvergleich", "List & Label");
  window.Show();
  window.Process("Berichtsdatei wird gelesen");
  window.StopProgress();
}

// Whether a timer goes off on this thread within several of the bar's ticks.
bool WaitForTimer() {
  Sleep(10 * ProgressModel::kTickMilliseconds);
  MSG message{};
  return PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE);
}

class EmptyWindow final : public Dialog {
 public:
  EmptyWindow() { Create(Own(), nullptr, WS_POPUP, 0, L"Leer"); }
  ~EmptyWindow() override { Destroy(); }

 private:
  INT_PTR Handle(UINT, WPARAM, LPARAM) override { return FALSE; }
};

// What the other tests find would be worth nothing if this were not seen.
TEST(LiveHandles, ThatAreNotGivenBackAreSeen) {
  const auto expect_seen = [](const auto& leaked) {
    EXPECT_NONFATAL_FAILURE(ExpectNoneLive(), "LiveHandles(kind)");
    EXPECT_TRUE(leaked);
  };
  expect_seen(std::make_unique<Font>(CreateFontW(10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"")));
  expect_seen(std::make_unique<Icon>(CopyIcon(LoadIconW(nullptr, IDI_APPLICATION))));
  expect_seen(std::make_unique<ImageList>(ImageList_Create(16, 16, ILC_COLOR, 1, 1)));
  expect_seen(std::make_unique<EmptyWindow>());
  expect_seen(std::make_unique<CommonControls>(Own()));
  ExpectNoneLive();
}

void UseProgressWindows(int rounds) {
  ThreadMessageLoop loop;
  for (int i = 0; i < rounds; ++i) {
    WindowsProgressWindow window(Own(), nullptr, loop);
    window.Init("Berichtsvergleich", "List & Label");
    window.Process("Berichtsdatei wird gelesen");
    EXPECT_GT(LiveHandles(HandleKind::kWindow), 0);
  }
  ExpectNoneLive();
}

void UseProtocolWindows(int rounds) {
  ResultDictionary errors;
  errors.Add("Bericht", {"Meldung"});
  const ProtocolTree tree(errors, {});
  const RepairGuide guide = protocol_window::RepairGuideOf("C:\\Programme");
  for (int i = 0; i < rounds; ++i) {
    const ProtocolWindow window(Own(), nullptr, tree, guide);
    RECT place{0, 0, 900, 900};
    SendMessageW(window.window(), WM_DPICHANGED, MAKELONG(144, 144),
                 reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(LiveHandles(HandleKind::kFont), 3);
  }
  ExpectNoneLive();
}

TEST(LiveHandles, AreGoneWithProgressWindows) { UseProgressWindows(kRounds); }

TEST(LiveHandles, AreGoneWithProtocolWindows) { UseProtocolWindows(kRounds); }

// For runs by hand (--gtest_also_run_disabled_tests): minutes under Wine.
TEST(LiveHandles, DISABLED_AreGoneWithAThousandWindows) {
  UseProgressWindows(kLongRounds);
  UseProtocolWindows(kLongRounds);
}

TEST(LiveHandles, AreGoneWithTheirOwner) {
  const HWND owner = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10,
                                     nullptr, nullptr, Own(), nullptr);
  {
    ThreadMessageLoop loop;
    WindowsProgressWindow window(Own(), owner, loop);
    DestroyWindow(owner);
    EXPECT_EQ(LiveHandles(HandleKind::kWindow), 0);
    UseAll(window);
  }
  ExpectNoneLive();
}

TEST(LiveHandles, NothingIsTakenForAWindowThatCannotBeMade) {
  const HWND gone =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, Own(), nullptr);
  DestroyWindow(gone);
  ThreadMessageLoop loop;
  WindowsProgressWindow window(Own(), gone, loop);
  ExpectNoneLive();
  UseAll(window);
  EXPECT_FALSE(WaitForTimer()) << "a timer without a window";
}

class UnfinishedWindow final : public Dialog {
 public:
  UnfinishedWindow() {
    Create(Own(), nullptr, WS_POPUP | WS_CAPTION, 0, L"Unfertig");
    pane_.emplace(Own(), window(), 1, COLOR_WINDOW, COLOR_WINDOWTEXT);
    throw std::bad_alloc();
  }
  ~UnfinishedWindow() override { Destroy(); }

 private:
  INT_PTR Handle(UINT, WPARAM, LPARAM) override { return FALSE; }

  std::optional<Pane> pane_;
};

TEST(LiveHandles, AreGoneWhenAWindowFailsHalfMade) {
  EXPECT_THROW(UnfinishedWindow(), std::bad_alloc);
  ExpectNoneLive();
  EXPECT_FALSE(FindWindowW(nullptr, L"Unfertig"));
}

}  // namespace
}  // namespace tessary::win32
