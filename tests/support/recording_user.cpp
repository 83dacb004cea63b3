#include "support/recording_user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace tessary {

class RecordingUser::Window final : public ProgressWindow {
 public:
  explicit Window(RecordingUser& user) : user_(user) { ++user_.open_windows_; }
  ~Window() override {
    --user_.open_windows_;
    user_.Note("close");
  }

  void Init(std::string_view strCaptionBold, std::string_view strCaptionNormal) override {
    user_.Note(std::string("captions ").append(strCaptionBold) + "|" +
               std::string(strCaptionNormal));
  }
  void Show() override { user_.Note("show"); }
  void Process(std::string_view strProcess) override {
    user_.Note(std::string("step ").append(strProcess));
  }
  void StopProgress() override { user_.Note("stop"); }

 private:
  RecordingUser& user_;
};

void RecordingUser::Note(std::string event) {
  events_.push_back(std::move(event));
  // The action may cause further events.
  if (action_) action_(std::string(events_.back()));
}

void RecordingUser::Clear() {
  events_.clear();
  protocols_.clear();
}

std::vector<std::string> RecordingUser::Texts(std::string_view word) const {
  const std::string start = std::string(word) + " ";
  std::vector<std::string> texts;
  for (const std::string& event : events_) {
    if (event.starts_with(start)) texts.push_back(event.substr(start.size()));
  }
  return texts;
}

std::size_t RecordingUser::Count(std::string_view event) const {
  return static_cast<std::size_t>(std::count(events_.begin(), events_.end(), event));
}

std::unique_ptr<ProgressWindow> RecordingUser::CreateProgressWindow() {
  return std::make_unique<Window>(*this);
}

Answer RecordingUser::Ask(std::string_view question) {
  Note(std::string("ask ").append(question));
  if (!answers_.empty()) {
    const Answer answer = answers_.front();
    answers_.pop_front();
    return answer;
  }
  if (standing_answer_) return *standing_answer_;
  ADD_FAILURE() << "unexpected question: " << question;
  return Answer::kNo;
}

void RecordingUser::ShowErrorProtocol(const ResultDictionary& dictErrors,
                                      const ResultDictionary& dictCorrect) {
  Note("protocol");
  protocols_.push_back({dictErrors.items(), dictCorrect.items()});
}

void RecordingUser::SetMousePointer(MousePointer pointer) {
  pointer_ = std::to_string(static_cast<int>(pointer));
  Note("pointer " + pointer_);
}

void RecordingUser::RestoreMousePointer() {
  pointer_ = "restored";
  Note("pointer restored");
}

}  // namespace tessary
