#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>

#include "platform/console.h"

namespace tessary {

// A console that keeps what is written and answers by script. Nothing is a terminal at first.
struct FakeConsole : Console {
  std::set<ConsoleStream> terminals;
  std::size_t width = 80;
  bool unicode = false;
  bool colours = false;
  std::map<std::string, std::string> environment;
  std::deque<std::string> input;
  WriteOutcome output_outcome = WriteOutcome::kWritten;
  std::string out;
  std::string err;

  // Makes all three streams a terminal that can do everything.
  void BeTerminal();

  bool IsTerminal(ConsoleStream stream) const override { return terminals.contains(stream); }
  std::size_t Width(ConsoleStream) const override { return width; }
  bool ShowsUnicode() const override { return unicode; }
  bool TakesColours(ConsoleStream stream) const override { return colours && IsTerminal(stream); }
  std::string Environment(const char* name) const override;
  WriteOutcome Write(ConsoleStream stream, std::string_view text) override;
  std::optional<std::string> ReadLine() override;
};

}  // namespace tessary
