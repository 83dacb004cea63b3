#include "cli/tessary.h"

#include <exception>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/help_text.h"
#include "platform/failure.h"
#include "ui/console/output.h"
#include "ui/console/status_line.h"

namespace tessary {
namespace {

// Carries out one parsed command line; an overload for each thing that it can ask for.
class Runner {
 public:
  Runner(Console& console, FileSystem& files, Workers* workers, Output& output,
         StatusLine& messages)
      : console_(console), files_(files), workers_(workers), output_(output), messages_(messages) {}

  int operator()(const UsageError& error) {
    messages_.Print("tessary: " + error.sentence);
    messages_.Print("Hilfe: " + error.help_command);
    return kExitWrongUsage;
  }

  int operator()(const HelpRequest& request) {
    output_.Text(request.command ? CommandHelp(*request.command) : GeneralHelp());
    return Delivered(kExitDone);
  }

  int operator()(const VersionRequest&) {
    output_.Line("tessary " TESSARY_VERSION);
    return Delivered(kExitDone);
  }

  int operator()(const CommandLine& line) {
    CommandSurroundings around{console_, files_, output_, messages_, workers_};
    switch (line.command) {
      case CommandId::kCheck:
        return Delivered(RunCheck(line, around));
      case CommandId::kRestore:
        return Delivered(RunRestore(line, around));
      case CommandId::kExplain:
        return Delivered(RunExplain(line, around));
      case CommandId::kInfo:
        return Delivered(RunInfo(line, around));
      case CommandId::kShow:
        return Delivered(RunShow(line, around));
      case CommandId::kRoundtrip:
        return RunRoundtrip(line, around);
      default:
        return RunOperation(line, around);
    }
  }

 private:
  // For commands whose result is their output: without it they have failed. A reader that has
  // gone had enough of it.
  int Delivered(int exit_code) {
    return output_.Flush() == WriteOutcome::kFailed ? int{kExitFailed} : exit_code;
  }

  Console& console_;
  FileSystem& files_;
  Workers* workers_;
  Output& output_;
  StatusLine& messages_;
};

int RunGuarded(const ParsedCommandLine& parsed, Runner& runner, StatusLine& messages) {
  try {
    return std::visit(runner, parsed);
  } catch (const std::exception& error) {
    messages.Print(std::string("tessary: Unerwarteter Fehler: ") + error.what());
    return kExitFailed;
  }
}

}  // namespace

int RunTessary(const std::vector<std::string>& arguments, Console& console, FileSystem& files,
               Workers* workers) {
  const ParsedCommandLine parsed = ParseCommandLine(arguments);
  const CommandLine* line = std::get_if<CommandLine>(&parsed);
  StatusLine messages(console, !line || !line->quiet);
  Output output(console);
  Runner runner(console, files, workers, output, messages);
  const int exit_code = RunGuarded(parsed, runner, messages);
  if (output.Flush() == WriteOutcome::kFailed) {
    messages.Print("tessary: Die Ausgabe konnte nicht vollständig geschrieben werden.");
  }
  return exit_code;
}

}  // namespace tessary
