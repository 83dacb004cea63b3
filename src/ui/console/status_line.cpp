#include "ui/console/status_line.h"

#include <string>

#include "ui/printable.h"

namespace tessary {

StatusLine::StatusLine(Console& console, bool visible)
    : console_(console), visible_(visible && console.IsTerminal(ConsoleStream::kError)) {}

void StatusLine::Show(std::string_view text) {
  if (!visible_) return;
  const std::string printable = Printable(text);
  // A character in the last column would make some terminals go on to the next line.
  const std::string_view cut = CutToColumns(printable, console_.Width(ConsoleStream::kError) - 1);
  const std::size_t columns = ColumnsOf(cut);
  std::string line = "\r";
  line.append(cut);
  if (columns < shown_columns_) line.append(shown_columns_ - columns, ' ');
  console_.Write(ConsoleStream::kError, line);
  shown_columns_ = columns;
}

void StatusLine::Clear() {
  if (shown_columns_ == 0) return;
  std::string line = "\r";
  line.append(shown_columns_, ' ').append("\r");
  console_.Write(ConsoleStream::kError, line);
  shown_columns_ = 0;
}

void StatusLine::Print(std::string_view text) {
  Clear();
  console_.Write(ConsoleStream::kError, Printable(text) + "\n");
}

}  // namespace tessary
