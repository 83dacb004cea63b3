#include "ui/console/console_user_interface.h"

#include <optional>
#include <string>
#include <vector>

#include "platform/console.h"
#include "platform/text.h"
#include "ui/progress_model.h"

namespace tessary {
namespace {

class ConsoleProgress final : public ProgressWindow {
 public:
  explicit ConsoleProgress(StatusLine& status) : status_(status) {}
  ~ConsoleProgress() override { status_.Clear(); }

  void Init(std::string_view strCaptionBold, std::string_view strCaptionNormal) override {
    model_.Init(strCaptionBold, strCaptionNormal);
  }
  void Show() override {}
  void Process(std::string_view strProcess) override {
    model_.Process(strProcess);
    status_.Show(model_.caption_bold() + ": " + model_.process());
  }
  void StopProgress() override {}

 private:
  StatusLine& status_;
  ProgressModel model_;
};

std::vector<std::string_view> LinesOf(std::string_view text) {
  constexpr std::string_view kLineEnd = "\r\n";
  std::vector<std::string_view> lines;
  for (auto end = text.find(kLineEnd); end != std::string_view::npos; end = text.find(kLineEnd)) {
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end + kLineEnd.size());
  }
  lines.push_back(text);
  return lines;
}

std::optional<Answer> AnswerOf(std::string_view typed) {
  for (const std::string_view yes : {"", "j", "ja"}) {
    if (EqualsIgnoreCase(typed, yes)) return Answer::kYes;
  }
  for (const std::string_view no : {"n", "nein"}) {
    if (EqualsIgnoreCase(typed, no)) return Answer::kNo;
  }
  return std::nullopt;
}

}  // namespace

std::unique_ptr<ProgressWindow> ConsoleUserInterface::CreateProgressWindow() {
  return std::make_unique<ConsoleProgress>(status_);
}

Answer ConsoleUserInterface::Ask(std::string_view question) {
  // Whoever is asked must see the question as well as be able to answer.
  const Console& console = status_.console();
  const bool attended =
      console.IsTerminal(ConsoleStream::kInput) && console.IsTerminal(ConsoleStream::kError);
  return attended ? AskOnTerminal(question) : AnswerUnattended(question);
}

Answer ConsoleUserInterface::AskOnTerminal(std::string_view question) {
  for (const std::string_view line : LinesOf(question)) status_.Print(line);
  while (true) {
    status_.console().Write(ConsoleStream::kError, "[J/n] ");
    const std::optional<std::string> typed = status_.console().ReadLine();
    if (!typed) {
      status_.Print("");
      return Answer::kNo;
    }
    if (const auto answer = AnswerOf(TrimBlanks(*typed))) return *answer;
    status_.Print("Bitte mit J (Ja) oder N (Nein) antworten.");
  }
}

Answer ConsoleUserInterface::AnswerUnattended(std::string_view question) {
  std::string text;
  for (const std::string_view line : LinesOf(question)) text.append(line).append(" ");
  text.append(unattended_answer_ == Answer::kYes ? "Antwort: Ja." : "Antwort: Nein.");
  notices_.Warning(text);
  return unattended_answer_;
}

}  // namespace tessary
