#pragma once

#include <string>
#include <string_view>

#include "cli/command_line.h"
#include "cli/command_table.h"

// The German sentences about wrong usage. `command` is null where no command has been recognised.

namespace tessary {

UsageError MissingCommand();
UsageError UnknownCommand(std::string_view typed);
UsageError UnknownOption(const CommandSpec* command, std::string_view typed);
UsageError MissingOperand(const CommandSpec& command, const OperandSpec& operand);
UsageError EmptyOperand(const CommandSpec& command, const OperandSpec& operand);
UsageError SurplusOperand(const CommandSpec& command, std::string_view operand);
UsageError MissingValue(const CommandSpec& command, const OptionSpec& option);
UsageError UnwantedValue(const CommandSpec& command, std::string_view option);
UsageError RepeatedOption(const CommandSpec& command, const OptionSpec& option);
UsageError WrongValue(const CommandSpec& command, const OptionSpec& option, std::string_view value,
                      std::span<const std::string_view> allowed);
UsageError MissingOption(const CommandSpec& command, std::string_view option,
                         std::string_view needed);

}  // namespace tessary
