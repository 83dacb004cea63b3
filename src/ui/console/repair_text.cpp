#include "ui/console/repair_text.h"

#include <string>
#include <string_view>

#include "ui/printable.h"

namespace tessary {
namespace {

// `text` in lines that begin with `first` and then with blanks of the same width.
void PrintWrapped(std::string_view first, std::string_view text, std::size_t columns,
                  Output& output) {
  std::string line(first);
  bool has_word = false;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(word.size() < text.size() ? word.size() + 1 : word.size());
    if (has_word && columns > 0 && ColumnsOf(line) + 1 + ColumnsOf(word) > columns) {
      output.Line(line);
      line.assign(first.size(), ' ');
      has_word = false;
    }
    if (has_word) line.push_back(' ');
    line.append(word);
    has_word = true;
  }
  output.Line(line);
}

}  // namespace

void PrintRepairGuide(const RepairGuide& guide, std::size_t columns, Output& output) {
  PrintWrapped("", guide.introduction, columns, output);
  std::size_t number = 0;
  for (const RepairStep& step : guide.steps) {
    const std::string mark = std::to_string(++number) + ". ";
    PrintWrapped(mark, step.text, columns, output);
    if (!step.value.empty()) {
      output.Line(std::string(mark.size(), ' ').append(Printable(step.value)));
    }
  }
}

}  // namespace tessary
