#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/command_table.h"
#include "manager/user_interface.h"

namespace tessary {

// A command as the user typed it: paths are not made absolute.
struct CommandLine {
  CommandId command = CommandId::kHelp;
  std::vector<std::string> operands;
  std::string backup;
  std::vector<std::string> omit;
  Answer answer_on_backup_failure = Answer::kNo;
  bool dry_run = false;
  bool verify = false;
  bool strict = false;
  bool oldest = false;
  std::string journal;
  std::string html;
  bool json = false;
  bool quiet = false;
};

// Help about one command, or about all.
struct HelpRequest {
  std::optional<CommandId> command;
};

struct VersionRequest {};

// What is wrong with a command line, and the command that explains how it should be.
struct UsageError {
  std::string sentence;
  std::string help_command;
};

using ParsedCommandLine = std::variant<CommandLine, HelpRequest, VersionRequest, UsageError>;

// Understands the arguments behind the program's name. Everything behind "--" is an operand.
ParsedCommandLine ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace tessary
