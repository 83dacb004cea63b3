#pragma once

#include <string>
#include <string_view>

#include "model_tree.h"

namespace tessary::model {

// The description that stands before an element's line text, ";" included; empty for an element
// of unknown status.
std::string ElementToDiffText(const Row& element);

// A line taken apart: the line text in `name`, the status, and the nine described fields. A line
// without a description comes back whole, with unknown status and empty fields.
Row DiffTextToElement(const std::string& line);

// `text` cut at its first `separator`.
struct Halves {
  bool both = false;  // the separator was there
  std::string first;  // the whole text when it was not
  std::string second;
};
Halves SplitOnce(std::string_view text, char separator);

// "D", "N", "U" or nothing; and back, where everything but these three letters is unknown.
std::string StatusToLetter(int status);
int LetterToStatus(const std::string& letter);

}  // namespace tessary::model
