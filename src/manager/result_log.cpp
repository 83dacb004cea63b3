#include "manager/result_log.h"

#include <utility>

#include "platform/text.h"

namespace tessary {

void ResultDictionary::Add(std::string text, std::vector<std::string> messages) {
  if (!places_.emplace(FoldCase(text), items_.size()).second) return;
  items_.push_back({std::move(text), std::move(messages)});
}

void ResultLog::AddToResultLog(std::string_view strText, bool blnError) {
  std::string text(TrimBlanks(strText));
  const std::vector<ErrorEntry>& entries = errors.objErrors->entries();
  if (!blnError || entries.empty()) {
    return (blnError ? dictErrors : dictCorrect).Add(std::move(text), {std::string()});
  }
  std::vector<std::string> messages;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    messages.push_back(entry->message);
  }
  dictErrors.Add(std::move(text), std::move(messages));
}

}  // namespace tessary
