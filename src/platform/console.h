#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The terminal, or whatever stands in its place, as a command sees it.

namespace tessary {

enum class ConsoleStream { kInput, kOutput, kError };

enum class WriteOutcome {
  kWritten,
  kClosed,  // whoever read the stream has gone, which is no fault of anybody's
  kFailed,  // what was written is lost, for example on a full disk
};

class Console {
 public:
  virtual ~Console() = default;

  virtual bool IsTerminal(ConsoleStream stream) const = 0;
  // The columns of the terminal behind a stream; 80 where they cannot be found out.
  virtual std::size_t Width(ConsoleStream stream) const = 0;
  // True when the terminal shows characters beyond ASCII.
  virtual bool ShowsUnicode() const = 0;
  // True when a stream is a terminal that understands colour sequences.
  virtual bool TakesColours(ConsoleStream stream) const = 0;
  // An environment variable; empty when it is not set.
  virtual std::string Environment(const char* name) const = 0;

  // Writes UTF-8 text as a whole. Never raises anything.
  virtual WriteOutcome Write(ConsoleStream stream, std::string_view text) = 0;
  // The next line of the input without its line end; nothing at its end.
  virtual std::optional<std::string> ReadLine() = 0;
};

// The console of this process. The first call makes sure that a closed pipe does not end the
// process and that no file opened later can take the place of a standard stream; so it belongs at
// the beginning of the program.
Console& SystemConsole();

// The program's arguments without its name.
std::vector<std::string> ProgramArguments(int argc, char** argv);

}  // namespace tessary
