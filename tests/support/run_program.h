#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessary {

struct ProgramResult {
  int exit_code = -1;  // -1 when the program was ended by a signal or could not be run
  std::string out;     // on a terminal, both outputs as the terminal got them
  std::string err;
};

struct ProgramRun {
  std::string program;
  std::vector<std::string> arguments;
  std::vector<std::string> environment = {};  // "NAME=value" beside the test's own
  std::string folder = {};                    // the current folder; empty for the test's own
};

// Runs a program with empty input and waits for its end.
ProgramResult RunProgram(const ProgramRun& run);

// The same with standard output going to `path`, such as /dev/full.
ProgramResult RunProgramInto(const ProgramRun& run, const std::string& path);

// The same on a terminal of its own, on which `typed` is typed; "\x04" ends the input.
ProgramResult RunOnTerminal(const ProgramRun& run, std::string_view typed);

}  // namespace tessary
