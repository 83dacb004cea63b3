#include "cli/usage_errors.h"

#include <algorithm>
#include <span>
#include <vector>

#include "cli/suggestion.h"

namespace tessary {
namespace {

std::string Quoted(std::string_view text) { return "„" + std::string(text) + "“"; }

UsageError Error(const CommandSpec* command, std::string sentence) {
  const std::string help =
      command ? "tessary help " + std::string(command->name) : "tessary --help";
  return {std::move(sentence), help};
}

// " Meinten Sie ...?" with a known word close to the typed one; empty when there is none.
std::string Suggestion(std::string_view typed, std::span<const std::string_view> known) {
  const auto word = SuggestWord(typed, known);
  return word ? " Meinten Sie " + Quoted(*word) + "?" : std::string();
}

// Options that may have been meant; without a command those of every command too.
std::vector<std::string_view> OptionNames(const CommandSpec* command) {
  std::vector<std::string_view> names = {"--help"};
  if (!command) names.push_back("--version");
  for (const CommandSpec& any : AllCommands()) {
    if (command && command != &any) continue;
    for (const OptionSpec& option : any.options) names.push_back(option.name);
  }
  return names;
}

bool AnyCommandHasOption(std::string_view name) {
  const auto commands = AllCommands();
  return std::any_of(commands.begin(), commands.end(), [&](const CommandSpec& command) {
    return FindOption(command, name) != nullptr;
  });
}

}  // namespace

UsageError MissingCommand() { return Error(nullptr, "Es fehlt ein Befehl."); }

UsageError UnknownCommand(std::string_view typed) {
  std::vector<std::string_view> names;
  for (const CommandSpec& command : AllCommands()) names.push_back(command.name);
  return Error(nullptr, "Unbekannter Befehl " + Quoted(typed) + "." + Suggestion(typed, names));
}

UsageError UnknownOption(const CommandSpec* command, std::string_view typed) {
  const std::string_view name = typed.substr(0, typed.find('='));
  if (AnyCommandHasOption(name)) {
    return Error(command, command ? "Der Befehl " + Quoted(command->name) + " hat keine Option " +
                                        Quoted(name) + "."
                                  : "Die Option " + Quoted(name) + " gehört hinter den Befehl.");
  }
  return Error(command,
               "Unbekannte Option " + Quoted(name) + "." + Suggestion(name, OptionNames(command)));
}

UsageError MissingOperand(const CommandSpec& command, const OperandSpec& operand) {
  return Error(&command, "Dem Befehl " + Quoted(command.name) + " fehlt die Angabe " +
                             std::string(operand.name) + " (" + std::string(operand.text) + ").");
}

UsageError EmptyOperand(const CommandSpec& command, const OperandSpec& operand) {
  return Error(&command, "Für den Befehl " + Quoted(command.name) + " ist die Angabe " +
                             std::string(operand.name) + " leer.");
}

UsageError SurplusOperand(const CommandSpec& command, std::string_view operand) {
  return Error(&command, "Für den Befehl " + Quoted(command.name) + " ist die Angabe " +
                             Quoted(operand) + " zu viel.");
}

UsageError MissingValue(const CommandSpec& command, const OptionSpec& option) {
  return Error(&command, "Der Option " + Quoted(option.name) + " fehlt der Wert " +
                             std::string(option.value) + ".");
}

UsageError UnwantedValue(const CommandSpec& command, std::string_view option) {
  return Error(&command, "Die Option " + Quoted(option) + " hat keinen Wert.");
}

UsageError RepeatedOption(const CommandSpec& command, const OptionSpec& option) {
  return Error(&command,
               "Die Option " + Quoted(option.name) + " darf nur einmal angegeben werden.");
}

UsageError WrongValue(const CommandSpec& command, const OptionSpec& option, std::string_view value,
                      std::span<const std::string_view> allowed) {
  std::string list;
  for (const std::string_view word : allowed) {
    if (!list.empty()) list.append(" oder ");
    list.append(Quoted(word));
  }
  return Error(&command, "Der Wert " + Quoted(value) + " der Option " + Quoted(option.name) +
                             " ist nicht erlaubt, nur " + list + "." + Suggestion(value, allowed));
}

UsageError MissingOption(const CommandSpec& command, std::string_view option,
                         std::string_view needed) {
  return Error(&command,
               "Die Option " + Quoted(option) + " verlangt die Option " + Quoted(needed) + ".");
}

}  // namespace tessary
