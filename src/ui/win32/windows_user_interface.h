#pragma once

#include <string>

#include "manager/user_interface.h"
#include "platform/windows/message_loop.h"
#include "ui/win32/mouse_pointer.h"

namespace tessary::win32 {

// Talks to whoever sits in front of the calling program by windows. Where nobody can, as in a
// service, nothing is shown and a question counts as answered with No.
class WindowsUserInterface final : public UserInterface {
 public:
  // `module` is the library that holds these windows, `own_folder` where it lies; `loop`, which
  // must outlive this object, handles the messages of the calling thread.
  WindowsUserInterface(HINSTANCE module, std::string own_folder, ThreadMessageLoop& loop);

  std::unique_ptr<ProgressWindow> CreateProgressWindow() override;
  Answer Ask(std::string_view question) override;
  void ShowErrorProtocol(const ResultDictionary& dictErrors,
                         const ResultDictionary& dictCorrect) override;
  void SetMousePointer(MousePointer pointer) override { pointer_.Set(pointer); }
  void RestoreMousePointer() override { pointer_.Restore(); }

 private:
  // The window of the program that is active on this thread or, while another program's is in
  // front, was so when the operation began; null when there is none.
  HWND CallersWindow() const;

  HINSTANCE module_;
  std::string own_folder_;
  ThreadMessageLoop& loop_;
  OperationPointer pointer_;
  HWND window_at_start_ = nullptr;
};

}  // namespace tessary::win32
