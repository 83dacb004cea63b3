#include "ui/win32/windows_user_interface.h"

#include <utility>

#include "platform/windows/wide_text.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/progress_window.h"
#include "ui/win32/protocol_window.h"
#include "ui/win32/scaling.h"

namespace tessary::win32 {
namespace {

class NoProgressWindow final : public ProgressWindow {
 public:
  void Init(std::string_view, std::string_view) override {}
  void Show() override {}
  void Process(std::string_view) override {}
  void StopProgress() override {}
};

// True when windows of this process can be seen by somebody.
bool IsInteractive() {
  USEROBJECTFLAGS flags{};
  DWORD size = 0;
  const HWINSTA station = GetProcessWindowStation();
  return station && GetUserObjectInformationW(station, UOI_FLAGS, &flags, sizeof(flags), &size) &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

WindowsUserInterface::WindowsUserInterface(HINSTANCE module, std::string own_folder,
                                           ThreadMessageLoop& loop)
    : module_(module), own_folder_(std::move(own_folder)), loop_(loop) {}

std::unique_ptr<ProgressWindow> WindowsUserInterface::CreateProgressWindow() {
  if (!IsInteractive()) return std::make_unique<NoProgressWindow>();
  window_at_start_ = CallersWindow();
  return std::make_unique<WindowsProgressWindow>(module_, window_at_start_, loop_);
}

HWND WindowsUserInterface::CallersWindow() const {
  if (const HWND active = GetActiveWindow()) return active;
  const bool is_there = IsWindowVisible(window_at_start_) &&
                        GetWindowThreadProcessId(window_at_start_, nullptr) == GetCurrentThreadId();
  return is_there ? window_at_start_ : nullptr;
}

Answer WindowsUserInterface::Ask(std::string_view question) {
  if (!IsInteractive()) return Answer::kNo;
  const MonitorScaling scaling;
  const CommonControls controls(module_);
  const std::wstring text = WideFromUtf8(question);
  const int button = MessageBoxW(CallersWindow(), text.c_str(), L"",
                                 MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON1 | MB_TASKMODAL);
  return button == IDYES ? Answer::kYes : Answer::kNo;
}

void WindowsUserInterface::ShowErrorProtocol(const ResultDictionary& dictErrors,
                                             const ResultDictionary& dictCorrect) {
  if (!IsInteractive()) return;
  const ProtocolTree tree(dictErrors, dictCorrect);
  const RepairGuide guide = protocol_window::RepairGuideOf(own_folder_);
  ProtocolWindow(module_, CallersWindow(), tree, guide).ShowModal();
}

}  // namespace tessary::win32
