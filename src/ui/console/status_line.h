#pragma once

#include <cstddef>
#include <string_view>

#include "platform/console.h"

namespace tessary {

// Standard error: whole lines that stay, and below them one line that is rewritten in place while
// work goes on. Texts may be any bytes.
class StatusLine {
 public:
  // With `visible` false, or where standard error is no terminal, Show does nothing.
  StatusLine(Console& console, bool visible);
  ~StatusLine() { Clear(); }
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;

  // Replaces what the line shows, cut to the terminal's width.
  void Show(std::string_view text);
  // Takes the line away.
  void Clear();
  // Takes the line away and prints one that stays.
  void Print(std::string_view text);

  Console& console() const { return console_; }

 private:
  Console& console_;
  bool visible_;
  std::size_t shown_columns_ = 0;
};

}  // namespace tessary
