#pragma once

#include "manager/user_interface.h"
#include "ui/console/status_line.h"

namespace tessary {

// The manager's surroundings on a command line: the progress window is a line on standard error,
// questions are asked on the terminal, and mouse pointers do not exist. The error protocol is not
// shown here, since a command prints what became of every report anyway.
class ConsoleUserInterface : public UserInterface {
 public:
  // Without a terminal every question gets `unattended_answer`, and `notices` hears of it.
  ConsoleUserInterface(StatusLine& status, RunNotices& notices, Answer unattended_answer)
      : status_(status), notices_(notices), unattended_answer_(unattended_answer) {}

  std::unique_ptr<ProgressWindow> CreateProgressWindow() override;
  // On a terminal the answer is J (or just the enter key) or N; the end of the input means No.
  Answer Ask(std::string_view question) override;
  void ShowErrorProtocol(const ResultDictionary&, const ResultDictionary&) override {}
  void SetMousePointer(MousePointer) override {}
  void RestoreMousePointer() override {}

 private:
  Answer AskOnTerminal(std::string_view question);
  Answer AnswerUnattended(std::string_view question);

  StatusLine& status_;
  RunNotices& notices_;
  Answer unattended_answer_;
};

}  // namespace tessary
