#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "manager/result_log.h"
#include "manager/user_interface.h"

namespace tessary {

// A user interface that shows nothing, answers by script and notes all it is told in order, as
// lines of one word and its text:
//
//   captions BOLD|NORMAL, show, step TEXT, stop, close (the progress window)
//   pointer 0, pointer 11, pointer restored
//   ask TEXT, protocol
//   warning TEXT, passed over PATH, skipped PATH
class RecordingUser : public UserInterface, public RunNotices {
 public:
  // What the error protocol was handed.
  struct Protocol {
    std::vector<ResultDictionary::Item> errors;
    std::vector<ResultDictionary::Item> correct;
  };

  // Answers to the next questions; a question without an answer fails the test and means No.
  void AnswerNext(Answer answer) { answers_.push_back(answer); }
  // Answers every question without an answer of its own.
  void AnswerAlways(Answer answer) { standing_answer_ = std::make_unique<Answer>(answer); }
  // Runs after a line has been noted; for changes made behind an operation's back.
  void AfterEvent(std::function<void(const std::string&)> action) { action_ = std::move(action); }
  // Forgets what has been noted.
  void Clear();

  const std::vector<std::string>& events() const { return events_; }
  const std::vector<Protocol>& protocols() const { return protocols_; }
  // The texts of the lines that begin with `word`, in order.
  std::vector<std::string> Texts(std::string_view word) const;
  std::vector<std::string> Steps() const { return Texts("step"); }
  std::vector<std::string> Questions() const { return Texts("ask"); }
  std::vector<std::string> Warnings() const { return Texts("warning"); }
  std::size_t Count(std::string_view event) const;
  // The pointer as the user sees it: "restored", "0" or "11".
  const std::string& pointer() const { return pointer_; }
  int open_windows() const { return open_windows_; }

  std::unique_ptr<ProgressWindow> CreateProgressWindow() override;
  Answer Ask(std::string_view question) override;
  void ShowErrorProtocol(const ResultDictionary& dictErrors,
                         const ResultDictionary& dictCorrect) override;
  void SetMousePointer(MousePointer pointer) override;
  void RestoreMousePointer() override;
  void Warning(const std::string& text) override { Note("warning " + text); }
  void PassedOver(const std::string& path) override { Note("passed over " + path); }
  void SkippedByAnswer(const std::string& path) override { Note("skipped " + path); }

 private:
  class Window;

  void Note(std::string event);

  std::vector<std::string> events_;
  std::vector<Protocol> protocols_;
  std::deque<Answer> answers_;
  std::unique_ptr<Answer> standing_answer_;
  std::function<void(const std::string&)> action_;
  std::string pointer_ = "restored";
  int open_windows_ = 0;
};

}  // namespace tessary
