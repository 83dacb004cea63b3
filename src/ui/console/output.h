#pragma once

#include <string>
#include <string_view>

#include "platform/console.h"

namespace tessary {

// Standard output, collected into large pieces. Once the stream has failed, nothing more is
// written to it.
class Output {
 public:
  explicit Output(Console& console) : console_(console) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Appends text that is safe to show, or a line of it.
  void Text(std::string_view text);
  void Line(std::string_view line);

  // Hands on what has been collected; what became of all that was written so far.
  WriteOutcome Flush();

 private:
  Console& console_;
  std::string pending_;
  WriteOutcome outcome_ = WriteOutcome::kWritten;
};

}  // namespace tessary
