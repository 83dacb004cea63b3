#pragma once

#include <span>
#include <string_view>

namespace tessary {

enum class CommandId {
  kDiff,
  kDiffFolder,
  kConvert,
  kConvertFolder,
  kCheck,
  kRestore,
  kExplain,
  kInfo,
  kShow,
  kRoundtrip,
  kHelp
};

enum class OptionId {
  kBackup,
  kOmit,
  kOnBackupFailure,
  kDryRun,
  kJournal,
  kVerify,
  kStrict,
  kOldest,
  kHtml,
  kJson,
  kQuiet
};

struct OperandSpec {
  std::string_view name;
  std::string_view text;
};

struct OptionSpec {
  OptionId id;
  std::string_view name;   // with its dashes
  std::string_view value;  // what the value is called; empty for a flag
  bool repeatable;
  std::string_view text;

  bool IsFlag() const { return value.empty(); }
};

// One command: what it takes and what its help says. Texts are German, lines of the examples
// separated by line ends.
struct CommandSpec {
  CommandId id;
  std::string_view name;
  std::string_view summary;
  std::span<const OperandSpec> operands;
  bool last_operand_repeats;
  bool last_operand_optional;
  std::span<const OptionSpec> options;
  std::string_view details;
  std::string_view examples;
};

// Every command in the order in which the help lists them.
std::span<const CommandSpec> AllCommands();
const CommandSpec& CommandOf(CommandId id);
// The command of this name, or null.
const CommandSpec* FindCommand(std::string_view name);
// The command's option of this name, "--" included, or null.
const OptionSpec* FindOption(const CommandSpec& command, std::string_view name);

}  // namespace tessary
