// The parser library tells commands, options and operands apart. Operands are counted here rather
// than declared to it, since it would take "[a,b]" among several of them for a list of its own;
// for the same reason values are taken as they were typed.

#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "cli/usage_errors.h"

namespace tessary {
namespace {

constexpr std::array<std::string_view, 2> kBackupFailureAnswers = {"abort", "continue"};
constexpr std::string_view kHelpOption = "--help";

// A negative number, such as that of an error, is none.
bool LooksLikeOption(std::string_view argument) {
  return argument.size() > 1 && argument[0] == '-' && (argument[1] < '0' || argument[1] > '9');
}

// The arguments up to "--" and those behind it.
struct Arguments {
  std::vector<std::string> parsed;
  std::vector<std::string> verbatim;
};

bool TakesValue(std::string_view name) {
  for (const CommandSpec& command : AllCommands()) {
    for (const OptionSpec& option : command.options) {
      if (option.name == name && !option.IsFlag()) return true;
    }
  }
  return false;
}

// The parser takes "--option=" for an option whose value is the next argument; here it has an
// empty value.
void AddArgument(const std::string& argument, std::vector<std::string>& parsed) {
  if (argument.ends_with('=') && TakesValue({argument.data(), argument.size() - 1})) {
    parsed.push_back(argument.substr(0, argument.size() - 1));
    parsed.emplace_back();
  } else {
    parsed.push_back(argument);
  }
}

Arguments SplitArguments(const std::vector<std::string>& arguments) {
  Arguments result;
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  for (auto argument = arguments.begin(); argument != end; ++argument) {
    AddArgument(*argument, result.parsed);
  }
  if (end != arguments.end()) result.verbatim.assign(end + 1, arguments.end());
  return result;
}

bool Contains(const std::vector<std::string>& arguments, std::string_view argument) {
  return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
}

void Declare(const OptionSpec& spec, CLI::App& command) {
  const std::string name(spec.name);
  if (spec.IsFlag()) {
    command.add_flag(name)->disable_flag_override();
    return;
  }
  CLI::Option* option = command.add_option(name);
  option->type_name(std::string(spec.value))->expected(1);
  if (spec.repeatable) option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

// Only commands that an argument names can be meant. Declaring the others too would take longer
// than all the rest of a short run.
void Declare(CLI::App& app, const Arguments& arguments) {
  app.set_help_flag("-h,--help");
  app.set_version_flag("--version", "");
  app.allow_windows_style_options(false);
  app.allow_extras();
  app.require_subcommand(0, 1);
  for (const CommandSpec& spec : AllCommands()) {
    if (!Contains(arguments.parsed, spec.name)) continue;
    CLI::App* command = app.add_subcommand(std::string(spec.name));
    for (const OptionSpec& option : spec.options) Declare(option, *command);
  }
}

// What the parser made of the arguments for one command.
class ParsedCommand {
 public:
  ParsedCommand(const CLI::App& app, const CommandSpec& spec, const Arguments& arguments)
      : app_(app), spec_(spec), arguments_(arguments) {}

  // Why the parser refused the arguments.
  UsageError Explain() const {
    for (const OptionSpec& option : spec_.options) {
      if (option.IsFlag() && HasArgumentBeginning(std::string(option.name) + "=")) {
        return UnwantedValue(&spec_, option.name);
      }
      if (!option.IsFlag() && !option.repeatable && Values(option).size() > 1) {
        return RepeatedOption(spec_, option);
      }
      if (!option.IsFlag() && arguments_.parsed.back() == option.name) {
        return MissingValue(spec_, option);
      }
    }
    return NotUnderstood(&spec_);
  }

  ParsedCommandLine Result() const {
    CommandLine line;
    line.command = spec_.id;
    for (const std::string& operand : app_.remaining()) {
      if (LooksLikeOption(operand)) return UnknownOption(&spec_, operand);
      line.operands.push_back(operand);
    }
    line.operands.insert(line.operands.end(), arguments_.verbatim.begin(),
                         arguments_.verbatim.end());
    for (const OptionSpec& option : spec_.options) {
      if (auto error = Take(option, line)) return *error;
    }
    if (auto error = CheckOperands(line)) return *error;
    if (line.strict && !line.verify) return MissingOption(spec_, "--strict", "--verify");
    return line;
  }

 private:
  const std::vector<std::string>& Values(const OptionSpec& option) const {
    return app_.get_option(std::string(option.name))->results();
  }

  bool HasArgumentBeginning(std::string_view beginning) const {
    return std::any_of(
        arguments_.parsed.begin(), arguments_.parsed.end(),
        [&](const std::string& argument) { return argument.starts_with(beginning); });
  }

  std::optional<UsageError> Take(const OptionSpec& option, CommandLine& line) const {
    const std::vector<std::string>& values = Values(option);
    if (values.empty()) return std::nullopt;
    const std::string& value = values.back();
    if (!option.IsFlag() && (value == kHelpOption || HasOption(spec_, value))) {
      return MissingValue(spec_, option);
    }
    switch (option.id) {
      case OptionId::kBackup:
        line.backup = value;
        break;
      case OptionId::kOmit:
        if (std::find(values.begin(), values.end(), "") != values.end()) {
          return MissingValue(spec_, option);
        }
        line.omit = values;
        break;
      case OptionId::kOnBackupFailure:
        if (std::find(kBackupFailureAnswers.begin(), kBackupFailureAnswers.end(), value) ==
            kBackupFailureAnswers.end()) {
          return WrongValue(spec_, option, value, kBackupFailureAnswers);
        }
        line.answer_on_backup_failure = value == "continue" ? Answer::kYes : Answer::kNo;
        break;
      case OptionId::kDryRun:
        line.dry_run = true;
        break;
      case OptionId::kVerify:
        line.verify = true;
        break;
      case OptionId::kStrict:
        line.strict = true;
        break;
      case OptionId::kOldest:
        line.oldest = true;
        break;
      case OptionId::kJournal:
        if (value.empty()) return MissingValue(spec_, option);
        line.journal = value;
        break;
      case OptionId::kHtml:
        if (value.empty()) return MissingValue(spec_, option);
        line.html = value;
        break;
      case OptionId::kJson:
        line.json = true;
        break;
      case OptionId::kQuiet:
        line.quiet = true;
        break;
    }
    return std::nullopt;
  }

  std::optional<UsageError> CheckOperands(const CommandLine& line) const {
    const std::size_t given = line.operands.size();
    const std::size_t most = spec_.operands.size();
    const std::size_t least = spec_.last_operand_optional ? most - 1 : most;
    if (given < least) return MissingOperand(spec_, spec_.operands[given]);
    if (given > most && !spec_.last_operand_repeats) {
      return SurplusOperand(spec_, line.operands[most]);
    }
    for (std::size_t i = 0; i < given; ++i) {
      // A variable of a script that was never set, most of the time.
      if (line.operands[i].empty()) {
        return EmptyOperand(spec_, spec_.operands[std::min(i, most - 1)]);
      }
    }
    return std::nullopt;
  }

  const CLI::App& app_;
  const CommandSpec& spec_;
  const Arguments& arguments_;
};

const CommandSpec* CommandIn(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? nullptr : FindCommand(commands.front()->get_name());
}

// "tessary help COMMAND" means the same as "tessary COMMAND --help".
ParsedCommandLine HelpAbout(const CommandLine& line) {
  if (line.operands.empty()) return HelpRequest{};
  const CommandSpec* command = FindCommand(line.operands.front());
  if (!command) return UnknownCommand(line.operands.front());
  return HelpRequest{command->id};
}

ParsedCommandLine Understand(const CLI::App& app, const Arguments& arguments) {
  const std::vector<std::string> before_command = app.remaining();
  const CommandSpec* spec = CommandIn(app);
  if (!before_command.empty()) {
    const std::string& first = before_command.front();
    return LooksLikeOption(first) ? UnknownOption(nullptr, first) : UnknownCommand(first);
  }
  if (!spec) return MissingCommand();
  const ParsedCommand command(*app.get_subcommands().front(), *spec, arguments);
  ParsedCommandLine result = command.Result();
  const CommandLine* line = std::get_if<CommandLine>(&result);
  return line && line->command == CommandId::kHelp ? HelpAbout(*line) : std::move(result);
}

}  // namespace

ParsedCommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
  const Arguments split = SplitArguments(arguments);
  CLI::App app;
  Declare(app, split);
  try {
    std::vector<std::string> reversed(split.parsed.rbegin(), split.parsed.rend());
    app.parse(std::move(reversed));
    return Understand(app, split);
  } catch (const CLI::CallForHelp&) {
    const CommandSpec* spec = CommandIn(app);
    return HelpRequest{spec ? std::optional(spec->id) : std::nullopt};
  } catch (const CLI::CallForVersion&) {
    return VersionRequest{};
  } catch (const CLI::ParseError&) {
    const CommandSpec* spec = CommandIn(app);
    if (!spec) return NotUnderstood(nullptr);
    return ParsedCommand(*app.get_subcommands().front(), *spec, split).Explain();
  }
}

}  // namespace tessary
