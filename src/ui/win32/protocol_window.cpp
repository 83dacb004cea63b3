#include "ui/win32/protocol_window.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "platform/windows/wide_text.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/icons.h"
#include "ui/win32/scaling.h"
#include "ui/win32/window_controls.h"

namespace tessary::win32 {
namespace {

enum PaneIndex : std::size_t { kPaneA, kPaneB, kPaneC, kPaneD, kPaneE };

// At 96 dots per inch.
constexpr int kFirstWidth = 540;
constexpr int kLeastWidth = 400;
constexpr int kMargin = 12;
constexpr int kGap = 6;
constexpr int kIconSize = 16;
constexpr int kLineThickness = 2;
constexpr int kLeastButtonWidth = 88;
constexpr int kButtonHeight = 25;

constexpr int kLeastTreeRows = 6;
constexpr int kFirstTreeRows = 12;

constexpr DWORD kStyle =
    WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;

// While it lives, the windows that a thread shows cannot be used, except one. Without an owner
// that would be the only way to keep the program from being used meanwhile.
class OtherWindowsDisabled {
 public:
  OtherWindowsDisabled(HWND except, HWND owner) : except_(except) {
    if (owner) Disable(owner, reinterpret_cast<LPARAM>(this));
    EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
  }
  ~OtherWindowsDisabled() {
    for (const HWND window : windows_) EnableWindow(window, TRUE);
  }
  OtherWindowsDisabled(const OtherWindowsDisabled&) = delete;
  OtherWindowsDisabled& operator=(const OtherWindowsDisabled&) = delete;

 private:
  static BOOL CALLBACK Disable(HWND window, LPARAM object) {
    auto& self = *reinterpret_cast<OtherWindowsDisabled*>(object);
    if (window == self.except_ || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
    try {
      self.windows_.push_back(window);
    } catch (...) {
      return FALSE;  // no exception may pass through the system
    }
    EnableWindow(window, FALSE);
    return TRUE;
  }

  HWND except_;
  std::vector<HWND> windows_;
};

}  // namespace

ProtocolWindow::ProtocolWindow(HINSTANCE module, HWND owner, const ProtocolTree& tree,
                               const RepairGuide& guide)
    : owner_(owner), guide_(guide), tree_(tree) {
  const MonitorScaling scaling;
  const CommonControls controls(module);
  Create(module, owner, kStyle, WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME,
         WideFromUtf8(protocol_window::kCaption).c_str());
  if (!window()) return;
  AddControls(module);
  SetResolution(ResolutionOf(window()));
  SetFirstSize();
  Centre(window(), owner);
}

ProtocolWindow::~ProtocolWindow() { Destroy(); }

void ProtocolWindow::AddControls(HINSTANCE module) {
  for (std::size_t i = 0; i < kPanes; ++i) {
    const bool title = i == kPaneA;
    panes_[i].emplace(module, window(), kFirstPane + static_cast<int>(i),
                      title ? COLOR_WINDOW : COLOR_BTNFACE,
                      title ? COLOR_WINDOWTEXT : COLOR_BTNTEXT);
  }
  const auto add_label = [this](PaneIndex pane, int id, std::string_view text) {
    AddLabel(panes_[pane]->window(), id, WideFromUtf8(text).c_str());
  };
  const auto add_line = [this](PaneIndex pane) {
    AddControl(panes_[pane]->window(), L"STATIC", kLine1, L"", SS_ETCHEDHORZ);
  };
  AddControl(panes_[kPaneA]->window(), L"STATIC", kPicture1, L"", SS_ICON | SS_CENTERIMAGE);
  add_label(kPaneA, kLabel3, protocol_window::kTitle);
  add_line(kPaneA);
  add_label(kPaneB, kLabel1, protocol_window::kSubtitle);
  tree_.Create(panes_[kPaneB]->window());
  add_label(kPaneC, kLabel2, guide_.introduction);
  AddSteps(panes_[kPaneD]->window());
  add_line(kPaneE);
  AddControl(panes_[kPaneE]->window(), L"BUTTON", kCmdClose,
             WideFromUtf8(protocol_window::kClose).c_str(), WS_TABSTOP | BS_DEFPUSHBUTTON);
  SendMessageW(window(), DM_SETDEFID, kCmdClose, 0);
}

void ProtocolWindow::AddSteps(HWND pane) {
  int offset = 0;
  for (const RepairStep& step : guide_.steps) {
    AddLabel(pane, kLabel11 + offset, (std::to_wstring(offset + 1) + L".").c_str());
    AddLabel(pane, kStepText + offset, WideFromUtf8(step.text).c_str());
    if (!step.value.empty()) AddLabel(pane, kStepPath + offset, WideFromUtf8(step.value).c_str());
    ++offset;
  }
}

void ProtocolWindow::ShowModal() {
  if (!window()) return;
  {
    const OtherWindowsDisabled disabled(window(), owner_);
    ShowWindow(window(), SW_SHOW);
    SetFocus(tree_.window());
    RunLoop();
  }  // Enabled before the window goes, so that the system has a window to activate.
  Destroy();
}

void ProtocolWindow::RunLoop() {
  MSG message{};
  while (window() && !closed_) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
    if (got <= 0) return;
    if (IsDialogMessageW(window(), &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

// What closes the window may have been sent by another thread: the loop, which waits for posted
// messages only, is woken by an empty one.
void ProtocolWindow::Close() {
  closed_ = true;
  PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

INT_PTR ProtocolWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wparam) == kCmdClose || LOWORD(wparam) == IDCANCEL) Close();
      return TRUE;
    case WM_CLOSE:
      Close();
      return TRUE;
    case WM_DESTROY:
      if (!closed_) Close();  // its owner goes
      return FALSE;
    case WM_NOTIFY:
      SetWindowLongPtrW(window(), DWLP_MSGRESULT,
                        tree_.Notify(*reinterpret_cast<const NMHDR*>(lparam)));
      return TRUE;
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) Arrange();
      return TRUE;
    case WM_GETMINMAXINFO:
      if (step_font_.get()) LimitSize(*reinterpret_cast<MINMAXINFO*>(lparam));
      return TRUE;
    case WM_DPICHANGED:
      FollowResolution(HIWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
      return TRUE;
    case WM_SYSCOLORCHANGE:
      SendMessageW(tree_.window(), message, wparam, lparam);
      return FALSE;
    default:
      return FALSE;
  }
}

int ProtocolWindow::FromScale(int value) const { return Scaled(value, resolution_); }

HWND ProtocolWindow::Item(std::size_t pane, int id) const {
  return GetDlgItem(panes_[pane]->window(), id);
}

// Chooses fonts and images for a resolution.
void ProtocolWindow::SetResolution(int resolution) {
  resolution_ = resolution;
  Font title = MakeTahoma(kTitleSize, FontWeight::kBold, resolution);
  Font normal = MakeTahoma(kNormalSize, FontWeight::kNormal, resolution);
  Font step = MakeSansSerif(resolution);
  Icon icon = MakeIcon(IconShape::kReport, FromScale(kIconSize));
  SetFont(Item(kPaneA, kLabel3), title.get());
  SetFont(Item(kPaneB, kLabel1), normal.get());
  SetFont(Item(kPaneC, kLabel2), normal.get());
  SetFont(Item(kPaneE, kCmdClose), normal.get());
  for (int id = kLabel11; id < kLine1; ++id) SetFont(Item(kPaneD, id), step.get());
  SendMessageW(Item(kPaneA, kPicture1), STM_SETICON, reinterpret_cast<WPARAM>(icon.get()), 0);
  tree_.SetResolution(normal.get(), resolution);
  title_font_ = std::move(title);
  normal_font_ = std::move(normal);
  step_font_ = std::move(step);
  icon_ = std::move(icon);
}

void ProtocolWindow::SetFirstSize() {
  const int width = FromScale(kFirstWidth);
  const Heights heights = HeightsFor(width);
  const int more = tree_.HeightOf(kFirstTreeRows) - tree_.HeightOf(kLeastTreeRows);
  SetClientSize(window(), {width, std::accumulate(heights.begin(), heights.end(), more)},
                resolution_);
}

void ProtocolWindow::LimitSize(MINMAXINFO& limits) const {
  const int width = FromScale(kLeastWidth);
  const Heights heights = HeightsFor(width);
  const SIZE least =
      OuterSize(window(), {width, std::accumulate(heights.begin(), heights.end(), 0)}, resolution_);
  const RECT area = WorkAreaOf(window());
  limits.ptMinTrackSize.x = std::min(least.cx, area.right - area.left);
  limits.ptMinTrackSize.y = std::min(least.cy, area.bottom - area.top);
}

void ProtocolWindow::FollowResolution(int resolution, const RECT& place) {
  SetResolution(resolution);
  SetWindowPos(window(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
  Arrange();
  RedrawWindow(window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

SIZE ProtocolWindow::ButtonSize() const {
  constexpr int kPadding = 12;
  const SIZE text = MeasureText(normal_font_.get(), WideFromUtf8(protocol_window::kClose),
                                FromScale(kFirstWidth));
  const auto padding = static_cast<LONG>(FromScale(kPadding));
  return {std::max<LONG>(FromScale(kLeastButtonWidth), text.cx + 2 * padding),
          std::max<LONG>(FromScale(kButtonHeight), text.cy + padding)};
}

int ProtocolWindow::NumberWidth() const {
  return MeasureText(step_font_.get(), L"0.", FromScale(kFirstWidth)).cx + FromScale(kGap);
}

ProtocolWindow::Heights ProtocolWindow::HeightsFor(int width) const {
  const int margin = FromScale(kMargin);
  const int line = LineHeight(normal_font_.get());
  const int title = std::max(FromScale(kIconSize), LineHeight(title_font_.get()));
  const int introduction =
      MeasureText(normal_font_.get(), WideFromUtf8(guide_.introduction), width - 2 * margin).cy;
  const int steps = WalkSteps(width, [](int, int, int) {});
  return {2 * margin + title + kLineThickness,
          margin + line + FromScale(kGap) + tree_.HeightOf(kLeastTreeRows), margin + introduction,
          FromScale(kGap) + steps + margin,
          kLineThickness + 2 * margin + static_cast<int>(ButtonSize().cy)};
}

void ProtocolWindow::Arrange() {
  if (!step_font_.get()) return;
  RECT client{};
  GetClientRect(window(), &client);
  const int width = client.right;
  Heights heights = HeightsFor(width);
  const int needed = std::accumulate(heights.begin(), heights.end(), 0);
  heights[kPaneB] = std::max(0, heights[kPaneB] + static_cast<int>(client.bottom) - needed);
  int top = 0;
  for (std::size_t i = 0; i < kPanes; ++i) {
    Place(panes_[i]->window(), 0, top, width, heights[i]);
    top += heights[i];
  }
  ArrangeTitle(width, heights[kPaneA]);
  ArrangeTree(width, heights[kPaneB]);
  ArrangeIntroduction(width);
  ArrangeSteps(width);
  ArrangeButton(width);
}

void ProtocolWindow::ArrangeTitle(int width, int height) {
  const int margin = FromScale(kMargin);
  const int icon = FromScale(kIconSize);
  const int text = LineHeight(title_font_.get());
  const int content = height - kLineThickness;
  const int left = margin + icon + FromScale(kGap);
  Place(Item(kPaneA, kPicture1), margin, (content - icon) / 2, icon, icon);
  Place(Item(kPaneA, kLabel3), left, (content - text) / 2, width - left - margin, text);
  Place(Item(kPaneA, kLine1), 0, content, width, kLineThickness);
}

void ProtocolWindow::ArrangeTree(int width, int height) {
  const int margin = FromScale(kMargin);
  const int line = LineHeight(normal_font_.get());
  const int top = margin + line + FromScale(kGap);
  Place(Item(kPaneB, kLabel1), margin, margin, width - 2 * margin, line);
  Place(tree_.window(), margin, top, width - 2 * margin, std::max(0, height - top));
}

void ProtocolWindow::ArrangeIntroduction(int width) {
  const int margin = FromScale(kMargin);
  RECT pane{};
  GetClientRect(panes_[kPaneC]->window(), &pane);
  Place(Item(kPaneC, kLabel2), margin, margin, width - 2 * margin, pane.bottom - margin);
}

template <class PlaceLine>
int ProtocolWindow::WalkSteps(int width, PlaceLine&& place) const {
  const int room = width - 2 * FromScale(kMargin) - NumberWidth();
  int top = 0;
  const auto put = [&](int id, const std::string& text) {
    const int height = MeasureText(step_font_.get(), WideFromUtf8(text), room).cy;
    place(id, top, height);
    top += height;
  };
  int offset = 0;
  for (const RepairStep& step : guide_.steps) {
    if (offset > 0) top += FromScale(kGap);
    put(kStepText + offset, step.text);
    if (!step.value.empty()) put(kStepPath + offset, step.value);
    ++offset;
  }
  return top;
}

void ProtocolWindow::ArrangeSteps(int width) {
  const int margin = FromScale(kMargin);
  const int number = NumberWidth();
  const int first = FromScale(kGap);
  WalkSteps(width, [&](int id, int top, int height) {
    Place(Item(kPaneD, id), margin + number, first + top, width - 2 * margin - number, height);
    if (id >= kStepPath) return;
    Place(Item(kPaneD, id - kStepText + kLabel11), margin, first + top, number,
          LineHeight(step_font_.get()));
  });
}

void ProtocolWindow::ArrangeButton(int width) {
  const int margin = FromScale(kMargin);
  const SIZE button = ButtonSize();
  Place(Item(kPaneE, kLine1), 0, 0, width, kLineThickness);
  Place(Item(kPaneE, kCmdClose), width - margin - button.cx, kLineThickness + margin, button.cx,
        button.cy);
}

}  // namespace tessary::win32
