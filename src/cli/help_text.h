#pragma once

#include <string>

#include "cli/command_table.h"

namespace tessary {

// The help texts, ending with a line end.
std::string GeneralHelp();
std::string CommandHelp(CommandId id);

}  // namespace tessary
