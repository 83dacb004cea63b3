#pragma once

#include "cli/command_line.h"
#include "platform/console.h"
#include "platform/file_system.h"
#include "platform/workers.h"
#include "ui/console/output.h"
#include "ui/console/status_line.h"

namespace tessary {

// What a command works with. Messages go to `messages`, results to `output`.
struct CommandSurroundings {
  Console& console;
  FileSystem& files;
  Output& output;
  StatusLine& messages;
  Workers* workers;  // may be null
};

// The commands; each returns the exit code.

// The four operations of the manager.
int RunOperation(const CommandLine& line, const CommandSurroundings& around);
// Tells how far difference files would bring each report; fails when not all the way.
int RunCheck(const CommandLine& line, const CommandSurroundings& around);
// Puts copies of reports back.
int RunRestore(const CommandLine& line, const CommandSurroundings& around);
// Explains a message or number; all as a page where none is given.
int RunExplain(const CommandLine& line, const CommandSurroundings& around);
// Names version and reference of each file; fails when one of them is no report.
int RunInfo(const CommandLine& line, const CommandSurroundings& around);
// Prints the element tree of a report or difference file.
int RunShow(const CommandLine& line, const CommandSurroundings& around);
// Reads a file into the line store and writes it back out under another name.
int RunRoundtrip(const CommandLine& line, const CommandSurroundings& around);

}  // namespace tessary
