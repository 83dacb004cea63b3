#include "ui/console/output.h"

namespace tessary {
namespace {

constexpr std::size_t kPieceSize = std::size_t{64} << 10;

}  // namespace

void Output::Text(std::string_view text) {
  pending_.append(text);
  if (pending_.size() >= kPieceSize) Flush();
}

void Output::Line(std::string_view line) {
  pending_.append(line);
  Text("\n");
}

WriteOutcome Output::Flush() {
  if (outcome_ == WriteOutcome::kWritten) {
    outcome_ = console_.Write(ConsoleStream::kOutput, pending_);
  }
  pending_.clear();
  return outcome_;
}

}  // namespace tessary
