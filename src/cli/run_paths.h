#pragma once

#include <cstddef>
#include <string>

#include "cli/command_line.h"

// The files and folders that one of the four operations works with, absolute.

namespace tessary {

// True for `convert` and `convert-folder`.
bool Converts(const CommandLine& line);

// An operand as a path.
std::string OperandPath(const CommandLine& line, std::size_t operand);

// The backup folder that was asked for; empty for the default one.
std::string WantedBackupFolder(const CommandLine& line);

// Where a conversion looks for its files and keeps the copies of reports. Empty when unknown.
struct ConversionFolders {
  std::string differences;
  std::string reports;
  std::string backups;
};
ConversionFolders FoldersOf(const CommandLine& line);

// The command with all that was given, to be typed again from anywhere.
std::string CommandText(const CommandLine& line);

}  // namespace tessary
