// Arguments are taken from left to right: what begins with a dash is an option, with its value in
// the same argument behind "=" or in the next one, anything else an operand. The first argument
// that is wrong is the one spoken of, but whoever asks for help anywhere gets it.

#include "cli/command_line.h"

#include <algorithm>
#include <array>
#include <span>

#include "cli/usage_errors.h"

namespace tessary {
namespace {

using Words = std::span<const std::string>;

constexpr std::array<std::string_view, 2> kBackupFailureAnswers = {"abort", "continue"};

bool AsksForHelp(std::string_view argument) { return argument == "-h" || argument == "--help"; }

// A negative number, such as that of an error, is none.
bool LooksLikeOption(std::string_view argument) {
  return argument.size() > 1 && argument[0] == '-' && (argument[1] < '0' || argument[1] > '9');
}

// What stands behind a command.
class CommandParser {
 public:
  // `rest`: up to "--".
  CommandParser(const CommandSpec& spec, Words rest) : spec_(spec), rest_(rest) {
    line_.command = spec.id;
  }

  ParsedCommandLine Parse(Words behind_dashes) {
    while (!rest_.empty()) {
      if (auto error = TakeArgument()) return *error;
    }
    line_.operands.insert(line_.operands.end(), behind_dashes.begin(), behind_dashes.end());
    if (auto error = CheckOperands()) return *error;
    if (line_.strict && !line_.verify) return MissingOption(spec_, "--strict", "--verify");
    return line_;
  }

 private:
  const std::string& NextWord() {
    const std::string& word = rest_.front();
    rest_ = rest_.subspan(1);
    return word;
  }

  std::optional<UsageError> TakeArgument() {
    const std::string& word = NextWord();
    if (!LooksLikeOption(word)) {
      line_.operands.push_back(word);
      return std::nullopt;
    }
    const std::size_t equals = word.find('=');
    const bool has_value = equals != std::string::npos;
    const OptionSpec* const option =
        FindOption(spec_, {word.data(), std::min(equals, word.size())});
    if (!option) return UnknownOption(&spec_, word);
    if (option->IsFlag()) {
      return has_value ? UnwantedValue(spec_, option->name) : Set(*option, {});
    }
    if (!option->repeatable && WasGiven(*option)) return RepeatedOption(spec_, *option);
    given_.push_back(option);
    if (has_value) return Set(*option, word.substr(equals + 1));
    if (rest_.empty() || FindOption(spec_, rest_.front())) return MissingValue(spec_, *option);
    return Set(*option, NextWord());
  }

  bool WasGiven(const OptionSpec& option) const {
    return std::find(given_.begin(), given_.end(), &option) != given_.end();
  }

  std::optional<UsageError> Set(const OptionSpec& option, const std::string& value) {
    switch (option.id) {
      case OptionId::kBackup:
        line_.backup = value;
        break;
      case OptionId::kOmit:
        if (value.empty()) return MissingValue(spec_, option);
        line_.omit.push_back(value);
        break;
      case OptionId::kOnBackupFailure:
        if (std::find(kBackupFailureAnswers.begin(), kBackupFailureAnswers.end(), value) ==
            kBackupFailureAnswers.end()) {
          return WrongValue(spec_, option, value, kBackupFailureAnswers);
        }
        line_.answer_on_backup_failure = value == "continue" ? Answer::kYes : Answer::kNo;
        break;
      case OptionId::kDryRun:
        line_.dry_run = true;
        break;
      case OptionId::kVerify:
        line_.verify = true;
        break;
      case OptionId::kStrict:
        line_.strict = true;
        break;
      case OptionId::kOldest:
        line_.oldest = true;
        break;
      case OptionId::kJournal:
        if (value.empty()) return MissingValue(spec_, option);
        line_.journal = value;
        break;
      case OptionId::kHtml:
        if (value.empty()) return MissingValue(spec_, option);
        line_.html = value;
        break;
      case OptionId::kJson:
        line_.json = true;
        break;
      case OptionId::kQuiet:
        line_.quiet = true;
        break;
    }
    return std::nullopt;
  }

  std::optional<UsageError> CheckOperands() const {
    const std::size_t given = line_.operands.size();
    const std::size_t most = spec_.operands.size();
    const std::size_t least = spec_.last_operand_optional ? most - 1 : most;
    if (given < least) return MissingOperand(spec_, spec_.operands[given]);
    if (given > most && !spec_.last_operand_repeats) {
      return SurplusOperand(spec_, line_.operands[most]);
    }
    for (std::size_t i = 0; i < given; ++i) {
      // A variable of a script that was never set, most of the time.
      if (line_.operands[i].empty()) {
        return EmptyOperand(spec_, spec_.operands[std::min(i, most - 1)]);
      }
    }
    return std::nullopt;
  }

  const CommandSpec& spec_;
  Words rest_;
  CommandLine line_;
  std::vector<const OptionSpec*> given_;  // those with a value
};

// "tessary help COMMAND" means the same as "tessary COMMAND --help".
ParsedCommandLine HelpAbout(const CommandLine& line) {
  if (line.operands.empty()) return HelpRequest{};
  const CommandSpec* command = FindCommand(line.operands.front());
  if (!command) return UnknownCommand(line.operands.front());
  return HelpRequest{command->id};
}

}  // namespace

ParsedCommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  const Words all(arguments);
  const auto dashes = std::find(all.begin(), all.end(), "--");
  const Words parsed(all.begin(), dashes);
  const Words behind_dashes = dashes == all.end() ? Words() : Words(dashes + 1, all.end());

  const auto command_name = std::find_if_not(parsed.begin(), parsed.end(), LooksLikeOption);
  const CommandSpec* const spec =
      command_name == parsed.end() ? nullptr : FindCommand(*command_name);
  if (std::any_of(parsed.begin(), parsed.end(), AsksForHelp)) {
    return HelpRequest{spec ? std::optional(spec->id) : std::nullopt};
  }
  if (parsed.empty()) return MissingCommand();
  const std::string& first = parsed.front();
  if (first == "--version") return VersionRequest{};
  if (LooksLikeOption(first)) return UnknownOption(nullptr, first);
  if (!spec) return UnknownCommand(first);
  ParsedCommandLine result = CommandParser(*spec, parsed.subspan(1)).Parse(behind_dashes);
  const CommandLine* line = std::get_if<CommandLine>(&result);
  return line && line->command == CommandId::kHelp ? HelpAbout(*line) : std::move(result);
}

}  // namespace tessary
