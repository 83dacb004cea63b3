#include "ui/win32/progress_window.h"

#include <algorithm>
#include <string>

#include "platform/windows/wide_text.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/scaling.h"
#include "ui/win32/window_controls.h"

namespace tessary::win32 {
namespace {

constexpr UINT_PTR kTimer1 = 1;

// At 96 dots per inch.
constexpr int kWidth = 400;
constexpr int kMargin = 14;
constexpr int kGap = 8;
constexpr int kBarHeight = 16;
constexpr int kLeastProcessLines = 2;

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_CLIPCHILDREN | DS_MODALFRAME;
constexpr DWORD kExtendedStyle = WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW;

void SetText(HWND control, std::string_view text) {
  SetWindowTextW(control, WideFromUtf8(text).c_str());
}

}  // namespace

WindowsProgressWindow::WindowsProgressWindow(HINSTANCE module, HWND owner, ThreadMessageLoop& loop,
                                             Pause pause)
    : loop_(loop), owner_(owner), pause_(pause) {
  const MonitorScaling scaling;
  const CommonControls controls(module);
  Create(module, owner_, kStyle, kExtendedStyle,
         WideFromUtf8(ProgressModel::kWindowCaption).c_str());
  if (!window()) return;
  AddControls(module);
  Init(model_.caption_bold(), model_.caption_normal());
  SetResolution(ResolutionOf(window()));
  SetTimer(window(), kTimer1, ProgressModel::kTickMilliseconds, nullptr);
}

WindowsProgressWindow::~WindowsProgressWindow() { Destroy(); }

void WindowsProgressWindow::AddControls(HINSTANCE module) {
  frame1_.emplace(module, window(), kFrame1, COLOR_WINDOW, COLOR_WINDOWTEXT);
  caption_bold_ = AddLabel(frame1_->window(), kLblCaptionBold, L"");
  caption_normal_ = AddLabel(frame1_->window(), kLblCaptionNormal, L"");
  frame2_.emplace(module, window(), kFrame2, COLOR_BTNFACE, COLOR_BTNTEXT);
  process_ = AddLabel(frame2_->window(), kLblProcess, L"");
  bar_ = AddControl(frame2_->window(), PROGRESS_CLASSW, kProgressBar1, L"", PBS_SMOOTH);
  SendMessageW(bar_, PBM_SETRANGE32, static_cast<WPARAM>(model_.minimum()), model_.maximum());
}

void WindowsProgressWindow::Init(std::string_view strCaptionBold,
                                 std::string_view strCaptionNormal) {
  model_.Init(strCaptionBold, strCaptionNormal);
  if (!window()) return;
  SetText(caption_bold_, model_.caption_bold());
  SetText(caption_normal_, model_.caption_normal());
}

void WindowsProgressWindow::Show() {
  if (!window()) return;
  {
    const MonitorScaling scaling;
    Centre(window(), owner_);
  }
  ShowWindow(window(), SW_SHOWNOACTIVATE);
  UpdateWindow(window());
}

void WindowsProgressWindow::Process(std::string_view strProcess) {
  model_.Process(strProcess);
  if (window()) {
    SetText(process_, model_.process());
    GrowForStep();
    RedrawWindow(window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  }
  loop_.TakeTurn();
}

void WindowsProgressWindow::StopProgress() {
  constexpr DWORD kMillisecondsFull = 200;
  model_.StopProgress();
  if (!window()) return;
  ShowBar();
  RedrawWindow(window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  pause_(kMillisecondsFull);
}

INT_PTR WindowsProgressWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_TIMER:
      model_.Tick();
      ShowBar();
      return TRUE;
    case WM_CLOSE:
    case WM_COMMAND:
      return TRUE;  // it closes when the work is done
    case WM_MOUSEACTIVATE:
      SetWindowLongPtrW(window(), DWLP_MSGRESULT, MA_NOACTIVATE);
      return TRUE;
    case WM_SYSCOLORCHANGE:
      SendMessageW(bar_, message, wparam, lparam);
      return FALSE;
    case WM_DPICHANGED:
      FollowResolution(HIWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
      return TRUE;
    case WM_DESTROY:
      KillTimer(window(), kTimer1);
      return FALSE;
    default:
      return FALSE;
  }
}

// The bar of newer systems moves to a higher value slowly, but to a lower one at once: it is sent
// one too far and back. For the last value there is room for that only while the range is wider.
void WindowsProgressWindow::ShowBar() {
  const auto minimum = static_cast<WPARAM>(model_.minimum());
  const int maximum = model_.maximum();
  const auto value = static_cast<WPARAM>(model_.value());
  const bool at_end = model_.value() >= maximum;
  if (at_end) SendMessageW(bar_, PBM_SETRANGE32, minimum, maximum + 1);
  SendMessageW(bar_, PBM_SETPOS, value + 1, 0);
  SendMessageW(bar_, PBM_SETPOS, value, 0);
  if (at_end) SendMessageW(bar_, PBM_SETRANGE32, minimum, maximum);
}

int WindowsProgressWindow::FromScale(int value) const { return Scaled(value, resolution_); }

// Chooses fonts and sizes for a resolution.
void WindowsProgressWindow::SetResolution(int resolution) {
  resolution_ = resolution;
  Font title = MakeTahoma(kTitleSize, FontWeight::kBold, resolution);
  Font normal = MakeTahoma(kNormalSize, FontWeight::kNormal, resolution);
  SetFont(caption_bold_, title.get());
  SetFont(caption_normal_, normal.get());
  SetFont(process_, normal.get());
  title_font_ = std::move(title);
  normal_font_ = std::move(normal);
  process_lines_ = std::max(kLeastProcessLines, LinesOfStep());
  Arrange();
}

void WindowsProgressWindow::FollowResolution(int resolution, const RECT& place) {
  SetResolution(resolution);
  SetWindowPos(window(), nullptr, place.left, place.top, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(window(), nullptr, TRUE);
}

int WindowsProgressWindow::InnerWidth() const { return FromScale(kWidth) - 2 * FromScale(kMargin); }

int WindowsProgressWindow::LinesOfStep() const {
  const std::wstring text = WideFromUtf8(model_.process());
  return MeasureText(normal_font_.get(), text, InnerWidth()).cy / LineHeight(normal_font_.get());
}

// Steps name reports, whose names may be long. The window does not shrink again, lest it jump to
// and fro.
void WindowsProgressWindow::GrowForStep() {
  const int lines = LinesOfStep();
  if (lines <= process_lines_) return;
  process_lines_ = lines;
  const MonitorScaling scaling;
  Arrange();
}

void WindowsProgressWindow::Arrange() {
  const int width = FromScale(kWidth);
  const int margin = FromScale(kMargin);
  const int inner = InnerWidth();
  const int title = LineHeight(title_font_.get());
  const int line = LineHeight(normal_font_.get());
  const int header = margin + title + FromScale(2) + line + margin;
  Place(frame1_->window(), 0, 0, width, header);
  Place(caption_bold_, margin, margin, inner, title);
  Place(caption_normal_, margin, margin + title + FromScale(2), inner, line);
  const int process = process_lines_ * line;
  const int bar_top = margin + process + FromScale(kGap);
  const int rest = bar_top + FromScale(kBarHeight) + margin;
  Place(frame2_->window(), 0, header, width, rest);
  Place(process_, margin, margin, inner, process);
  Place(bar_, margin, bar_top, inner, FromScale(kBarHeight));
  SetClientSize(window(), {width, header + rest}, resolution_);
}

}  // namespace tessary::win32
