// A real console takes UTF-16, so umlauts come out right whatever its code page. Redirected output
// gets the UTF-8 bytes as they are.

#include "platform/console.h"

#include <algorithm>
#include <memory>

#include "platform/text.h"
#include "platform/windows/system_headers.h"
#include "platform/windows/wide_text.h"

namespace tessary {
namespace {

constexpr std::size_t kDefaultWidth = 80;

HANDLE HandleOf(ConsoleStream stream) {
  switch (stream) {
    case ConsoleStream::kInput:
      return GetStdHandle(STD_INPUT_HANDLE);
    case ConsoleStream::kOutput:
      return GetStdHandle(STD_OUTPUT_HANDLE);
    case ConsoleStream::kError:
      return GetStdHandle(STD_ERROR_HANDLE);
  }
  return INVALID_HANDLE_VALUE;
}

WriteOutcome OutcomeOf(DWORD error) {
  const bool closed = error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA;
  return closed ? WriteOutcome::kClosed : WriteOutcome::kFailed;
}

// Hands `text` on in pieces that the system takes; `write` is WriteFile or WriteConsoleW.
template <typename Text, typename WriteCall>
WriteOutcome WriteInPieces(Text text, WriteCall write) {
  constexpr std::size_t kLargestPiece = 8192;
  while (!text.empty()) {
    const auto size = static_cast<DWORD>(std::min(text.size(), kLargestPiece));
    DWORD written = 0;
    if (!write(text.data(), size, &written)) return OutcomeOf(GetLastError());
    text.remove_prefix(written);
  }
  return WriteOutcome::kWritten;
}

// Switches a console to understanding colour sequences as long as the object lives.
class ColourMode {
 public:
  explicit ColourMode(HANDLE console) : console_(console) {
    constexpr DWORD kSequences = ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING;
    on_ = GetConsoleMode(console_, &before_) && SetConsoleMode(console_, before_ | kSequences);
  }
  ~ColourMode() {
    if (on_) SetConsoleMode(console_, before_);
  }
  ColourMode(const ColourMode&) = delete;
  ColourMode& operator=(const ColourMode&) = delete;

  bool on() const { return on_; }

 private:
  HANDLE console_;
  DWORD before_ = 0;
  bool on_;
};

// Reads a byte of redirected input or a character of a console.
template <typename Unit>
bool ReadUnit(HANDLE input, Unit& unit) {
  DWORD count = 0;
  if constexpr (sizeof(Unit) == 1) {
    return ReadFile(input, &unit, 1, &count, nullptr) && count == 1;
  } else {
    return ReadConsoleW(input, &unit, 1, &count, nullptr) && count == 1;
  }
}

// Takes unit by unit, so that nothing behind the line is lost to whoever reads next.
template <typename Text>
std::optional<Text> ReadLineOf(HANDLE input) {
  constexpr typename Text::value_type kEndOfInput = 0x1A;  // Ctrl+Z and the enter key.
  Text line;
  typename Text::value_type unit{};
  bool complete = false;
  while (!complete && ReadUnit(input, unit)) {
    complete = unit == '\n';
    if (!complete) line.push_back(unit);
  }
  if (line.ends_with('\r')) line.pop_back();
  if (line.empty() && !complete) return std::nullopt;
  const bool typed_end = sizeof(unit) > 1 && line.starts_with(kEndOfInput);
  return typed_end ? std::nullopt : std::optional(std::move(line));
}

class WindowsConsole final : public Console {
 public:
  bool IsTerminal(ConsoleStream stream) const override {
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
  }

  std::size_t Width(ConsoleStream stream) const override {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(HandleOf(stream), &info)) return kDefaultWidth;
    const int width = info.srWindow.Right - info.srWindow.Left + 1;
    return width > 0 ? static_cast<std::size_t>(width) : kDefaultWidth;
  }

  // The fonts of classic consoles lack more than letters.
  bool ShowsUnicode() const override { return !Environment("WT_SESSION").empty(); }

  bool TakesColours(ConsoleStream stream) const override {
    if (stream == ConsoleStream::kInput) return false;
    return stream == ConsoleStream::kOutput ? output_colours_.on() : error_colours_.on();
  }

  std::string Environment(const char* name) const override {
    const std::wstring wide_name = WideFromUtf8(name);
    std::wstring value(256, L'\0');
    while (true) {
      const auto capacity = static_cast<DWORD>(value.size());
      const DWORD size = GetEnvironmentVariableW(wide_name.c_str(), value.data(), capacity);
      value.resize(size);
      if (size < capacity) return Utf8FromWide(value);
    }
  }

  WriteOutcome Write(ConsoleStream stream, std::string_view text) override {
    const HANDLE handle = HandleOf(stream);
    if (!IsTerminal(stream)) {
      return WriteInPieces(text, [&](const char* bytes, DWORD size, DWORD* written) {
        return WriteFile(handle, bytes, size, written, nullptr);
      });
    }
    const std::wstring wide = WideFromUtf8(ToValidUtf8(text));
    return WriteInPieces(std::wstring_view(wide),
                         [&](const wchar_t* units, DWORD size, DWORD* written) {
                           return WriteConsoleW(handle, units, size, written, nullptr);
                         });
  }

  std::optional<std::string> ReadLine() override {
    const HANDLE input = HandleOf(ConsoleStream::kInput);
    if (!IsTerminal(ConsoleStream::kInput)) return ReadLineOf<std::string>(input);
    const auto line = ReadLineOf<std::wstring>(input);
    return line ? std::optional(Utf8FromWide(*line)) : std::nullopt;
  }

 private:
  ColourMode output_colours_{HandleOf(ConsoleStream::kOutput)};
  ColourMode error_colours_{HandleOf(ConsoleStream::kError)};
};

struct LocalMemory {
  void operator()(wchar_t** memory) const { LocalFree(memory); }
};

}  // namespace

Console& SystemConsole() {
  static WindowsConsole console;
  return console;
}

// The system hands the arguments over as one UTF-16 text; what main gets has lost characters.
std::vector<std::string> ProgramArguments(int, char**) {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalMemory> arguments(
      CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<std::string> texts;
  for (int i = 1; arguments && i < count; ++i) texts.push_back(Utf8FromWide(arguments.get()[i]));
  return texts;
}

}  // namespace tessary
