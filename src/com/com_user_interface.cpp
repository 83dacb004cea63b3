#include "com/com_user_interface.h"

#include "platform/windows/wide_text.h"

namespace tessary::com {
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

std::unique_ptr<ProgressWindow> ComUserInterface::CreateProgressWindow() {
  return std::make_unique<NoProgressWindow>();
}

Answer ComUserInterface::Ask(std::string_view question) {
  if (!IsInteractive()) return Answer::kNo;
  const std::wstring text = WideFromUtf8(question);
  const int button = MessageBoxW(GetActiveWindow(), text.c_str(), L"",
                                 MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON1 | MB_TASKMODAL);
  return button == IDYES ? Answer::kYes : Answer::kNo;
}

void ComUserInterface::SetMousePointer(MousePointer pointer) {
  const auto* name = pointer == MousePointer::kHourglass ? IDC_WAIT : IDC_ARROW;
  const HCURSOR before = SetCursor(LoadCursorW(nullptr, name));
  if (!cursor_set_) callers_cursor_ = before;
  cursor_set_ = true;
}

void ComUserInterface::RestoreMousePointer() {
  if (cursor_set_) SetCursor(callers_cursor_);
  cursor_set_ = false;
}

}  // namespace tessary::com
