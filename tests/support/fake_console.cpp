#include "support/fake_console.h"

namespace tessary {

void FakeConsole::BeTerminal() {
  terminals = {ConsoleStream::kInput, ConsoleStream::kOutput, ConsoleStream::kError};
  unicode = true;
  colours = true;
}

std::string FakeConsole::Environment(const char* name) const {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

WriteOutcome FakeConsole::Write(ConsoleStream stream, std::string_view text) {
  if (stream == ConsoleStream::kError) {
    err.append(text);
    return WriteOutcome::kWritten;
  }
  if (output_outcome == WriteOutcome::kWritten) out.append(text);
  return output_outcome;
}

std::optional<std::string> FakeConsole::ReadLine() {
  if (input.empty()) return std::nullopt;
  std::string line = input.front();
  input.pop_front();
  return line;
}

}  // namespace tessary
