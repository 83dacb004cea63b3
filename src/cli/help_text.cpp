#include "cli/help_text.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace tessary {
namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kIntroduction =
    "Tessary bringt List & Label Berichte auf eine neue Version: Es vergleicht die\n"
    "Berichte zweier Versionen des Herstellers und wendet die Unterschiede auf die\n"
    "angepassten Berichte eines Kunden an.\n";
constexpr std::string_view kGeneralExamples =
    "  mkdir differenz\n"
    "  tessary diff-folder version3 version4 differenz\n"
    "  tessary convert-folder differenz Berichte\n"
    "  tessary info Berichte/Rechnung.lst\n";
constexpr std::string_view kExitCodes =
    "  0  ohne Fehler ausgeführt\n"
    "  1  etwas ist fehlgeschlagen, ein Bericht wurde wegen einer Antwort übersprungen,\n"
    "     oder check hat eine Lücke gefunden\n"
    "  2  falscher Aufruf, oder die Datei zu --html oder --journal kann nicht\n"
    "     geschrieben werden; es ist nichts geschehen\n";

// Two columns; what stands on the right may have several lines. The left texts are ASCII.
class Columns {
 public:
  void Add(std::string left, std::string_view right) {
    width_ = std::max(width_, left.size());
    rows_.emplace_back(std::move(left), right);
  }

  void AppendTo(std::string& help) const {
    for (const auto& [left, right] : rows_) AppendRow(left, right, help);
  }

 private:
  void AppendRow(const std::string& left, std::string_view right, std::string& help) const {
    help.append(kIndent).append(left).append(width_ - left.size(), ' ');
    for (bool more = true; more;) {
      const auto end = right.find('\n');
      help.append(kIndent).append(right.substr(0, end)).append("\n");
      more = end != std::string_view::npos;
      if (!more) break;
      right.remove_prefix(end + 1);
      help.append(kIndent).append(width_, ' ');
    }
  }

  std::vector<std::pair<std::string, std::string>> rows_;
  std::size_t width_ = 0;
};

std::string OptionText(const OptionSpec& option) {
  std::string text(option.name);
  if (!option.IsFlag()) text.append(" ").append(option.value);
  return text;
}

std::string Usage(const CommandSpec& command) {
  std::string usage = "tessary " + std::string(command.name);
  for (std::size_t i = 0; i < command.operands.size(); ++i) {
    const std::string name(command.operands[i].name);
    const bool last = i + 1 == command.operands.size();
    usage.append(last && command.last_operand_optional ? " [" + name + "]" : " " + name);
    if (last && command.last_operand_repeats) usage.append("...");
  }
  for (const OptionSpec& option : command.options) {
    usage.append(" [" + OptionText(option) + "]").append(option.repeatable ? "..." : "");
  }
  return usage;
}

// The usage with its options on lines of their own where it would become long.
std::string WrappedUsage(const CommandSpec& command) {
  constexpr std::size_t kLongest = 76;
  std::string text;
  std::string line(kIndent);
  const std::string usage = Usage(command);
  const std::size_t hanging =
      kIndent.size() + std::string_view("tessary ").size() + command.name.size() + 1;
  std::size_t begin = 0;
  while (begin < usage.size()) {
    std::size_t end = usage.find(" [", begin + 1);
    if (end == std::string::npos) end = usage.size();
    if (line.size() + end - begin > kLongest) {
      text.append(line).append("\n");
      line.assign(hanging - 1, ' ');
    }
    line.append(usage, begin, end - begin);
    begin = end;
  }
  return text.append(line).append("\n");
}

void AppendExamples(std::string_view examples, std::string& help) {
  help.append("\nBeispiele:\n");
  while (!examples.empty()) {
    const auto end = examples.find('\n');
    help.append(kIndent).append(examples.substr(0, end)).append("\n");
    examples.remove_prefix(end == std::string_view::npos ? examples.size() : end + 1);
  }
}

}  // namespace

std::string GeneralHelp() {
  std::string help(kIntroduction);
  help.append("\nAufruf:\n  tessary BEFEHL ANGABEN [OPTIONEN]\n\nBefehle:\n");
  Columns commands;
  for (const CommandSpec& command : AllCommands()) {
    commands.Add(std::string(command.name), command.summary);
  }
  commands.AppendTo(help);
  help.append("\nOptionen:\n");
  Columns options;
  options.Add("-h, --help", "diese Hilfe, hinter einem Befehl die Hilfe zu ihm");
  options.Add("--version", "Version von Tessary");
  options.Add("--", "alles Weitere sind Angaben, auch wenn es mit \"-\" beginnt");
  options.AppendTo(help);
  help.append("\nBeispiele:\n").append(kGeneralExamples);
  help.append("\nRückgabewerte:\n").append(kExitCodes);
  help.append("\nMehr zu einem Befehl: tessary help BEFEHL\n");
  return help;
}

std::string CommandHelp(CommandId id) {
  const CommandSpec& command = CommandOf(id);
  std::string help = std::string(command.name) + ": " + std::string(command.summary) + "\n\n";
  help.append("Aufruf:\n").append(WrappedUsage(command));
  if (!command.details.empty()) help.append("\n").append(command.details).append("\n");
  help.append("\nAngaben:\n");
  Columns operands;
  for (const OperandSpec& operand : command.operands) {
    operands.Add(std::string(operand.name), operand.text);
  }
  operands.AppendTo(help);
  help.append("\nOptionen:\n");
  Columns options;
  for (const OptionSpec& option : command.options) options.Add(OptionText(option), option.text);
  options.Add("-h, --help", "diese Hilfe");
  options.AppendTo(help);
  AppendExamples(command.examples, help);
  return help;
}

}  // namespace tessary
