#pragma once

#include "com/system.h"
#include "manager/user_interface.h"

namespace tessary::com {

// Talks to whoever sits in front of the calling program. Where nobody can, as in a service, a
// question counts as answered with No.
class ComUserInterface final : public UserInterface {
 public:
  std::unique_ptr<ProgressWindow> CreateProgressWindow() override;
  Answer Ask(std::string_view question) override;
  void ShowErrorProtocol(const ResultDictionary&, const ResultDictionary&) override {}
  void SetMousePointer(MousePointer pointer) override;
  void RestoreMousePointer() override;

 private:
  HCURSOR callers_cursor_ = nullptr;
  bool cursor_set_ = false;
};

}  // namespace tessary::com
