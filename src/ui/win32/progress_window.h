#pragma once

#include <optional>

#include "manager/user_interface.h"
#include "platform/windows/message_loop.h"
#include "ui/progress_model.h"
#include "ui/win32/dialog.h"
#include "ui/win32/fonts.h"

namespace tessary::win32 {

// The progress window. It never takes the focus from the program that works, and its user cannot
// close it. Its bar moves whenever the thread's messages are handled.
class WindowsProgressWindow final : public ProgressWindow, private Dialog {
 public:
  // Lets the thread wait for some milliseconds.
  using Pause = void(WINAPI*)(DWORD milliseconds);

  // `owner` is the window that is worked for, null without one. When it goes before this window,
  // or no window can be made, nothing more is shown.
  WindowsProgressWindow(HINSTANCE module, HWND owner, ThreadMessageLoop& loop, Pause pause = Sleep);
  ~WindowsProgressWindow() override;

  void Init(std::string_view strCaptionBold, std::string_view strCaptionNormal) override;
  // Centred on the owner.
  void Show() override;
  // Paints the new text at once.
  void Process(std::string_view strProcess) override;
  // Shows the full bar for a moment.
  void StopProgress() override;

 private:
  INT_PTR Handle(UINT message, WPARAM wparam, LPARAM lparam) override;
  void AddControls(HINSTANCE module);
  void Arrange();
  void GrowForStep();
  // How many lines the step takes.
  int LinesOfStep() const;
  int InnerWidth() const;
  void SetResolution(int resolution);
  void FollowResolution(int resolution, const RECT& place);
  void ShowBar();
  int FromScale(int value) const;

  ThreadMessageLoop& loop_;
  HWND owner_;
  Pause pause_;
  int process_lines_ = 0;
  ProgressModel model_;
  int resolution_ = USER_DEFAULT_SCREEN_DPI;
  Font title_font_;
  Font normal_font_;
  std::optional<Pane> frame1_;
  std::optional<Pane> frame2_;
  HWND caption_bold_ = nullptr;
  HWND caption_normal_ = nullptr;
  HWND process_ = nullptr;
  HWND bar_ = nullptr;
};

}  // namespace tessary::win32
