#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/error_collection.h"

namespace tessary {

// Log texts with their messages, in the order in which they were added. Texts are compared
// without regard to case; adding one that is there already changes nothing.
class ResultDictionary {
 public:
  struct Item {
    std::string text;
    std::vector<std::string> messages;
  };

  void Add(std::string text, std::vector<std::string> messages);
  std::int32_t Count() const { return static_cast<std::int32_t>(items_.size()); }
  const std::vector<Item>& items() const { return items_; }

 private:
  std::vector<Item> items_;
  std::unordered_map<std::string, std::size_t> places_;  // by folded text
};

// What the operations of one thread have come to: the entries of the last operation, and one item
// per report or folder that succeeded or failed. It is never cleared and grows over all operations.
struct ResultLog {
  SharedErrors errors;
  ResultDictionary dictErrors;
  ResultDictionary dictCorrect;

  // Records a report under the trimmed text. A failed one takes the messages of the collected
  // entries, the entry added first standing last; without entries it has one empty message.
  void AddToResultLog(std::string_view strText, bool blnError);
};

}  // namespace tessary
