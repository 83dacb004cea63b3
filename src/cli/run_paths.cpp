#include "cli/run_paths.h"

#include "cli/arguments.h"
#include "manager/backup.h"
#include "platform/path.h"
#include "platform/shell_word.h"
#include "platform/text.h"

namespace tessary {
namespace {

std::string OptionName(const CommandSpec& command, OptionId id) {
  for (const OptionSpec& option : command.options) {
    if (option.id == id) return " " + std::string(option.name);
  }
  return {};
}

}  // namespace

bool Converts(const CommandLine& line) {
  return line.command == CommandId::kConvert || line.command == CommandId::kConvertFolder;
}

std::string OperandPath(const CommandLine& line, std::size_t operand) {
  return AbsolutePath(line.operands[operand]);
}

// A blank folder means the default one, so it must not become the current folder.
std::string WantedBackupFolder(const CommandLine& line) {
  return AbsolutePath(std::string(TrimBlanks(line.backup)));
}

ConversionFolders FoldersOf(const CommandLine& line) {
  ConversionFolders folders;
  if (line.command == CommandId::kConvert) {
    folders.reports = ParentFolderOf(OperandPath(line, 0));
    folders.differences = ParentFolderOf(OperandPath(line, 1));
  } else {
    folders.differences = OperandPath(line, 0);
    folders.reports = OperandPath(line, 1);
  }
  folders.backups = WantedBackupFolder(line);
  if (folders.backups.empty() && !folders.reports.empty()) {
    folders.backups = DefaultBackupFolder(folders.reports);
  }
  return folders;
}

std::string CommandText(const CommandLine& line) {
  const CommandSpec& command = CommandOf(line.command);
  std::string text = "tessary " + std::string(command.name);
  for (std::size_t i = 0; i < line.operands.size(); ++i) {
    text.append(" ").append(ShellWord(OperandPath(line, i)));
  }
  const auto name = [&](OptionId id) { return OptionName(command, id); };
  const std::string backup = WantedBackupFolder(line);
  if (!backup.empty()) text.append(name(OptionId::kBackup) + "=" + ShellWord(backup));
  for (const std::string& omitted : line.omit) {
    text.append(name(OptionId::kOmit) + "=" + ShellWord(omitted));
  }
  if (line.answer_on_backup_failure == Answer::kYes) {
    text.append(name(OptionId::kOnBackupFailure) + "=continue");
  }
  if (line.verify) text.append(name(OptionId::kVerify));
  if (line.strict) text.append(name(OptionId::kStrict));
  if (line.dry_run) text.append(name(OptionId::kDryRun));
  const auto file = [&](OptionId id, const std::string& path) {
    if (!path.empty()) text.append(name(id) + "=" + ShellWord(AbsolutePath(path)));
  };
  file(OptionId::kJournal, line.journal);
  file(OptionId::kHtml, line.html);
  if (line.json) text.append(name(OptionId::kJson));
  if (line.quiet) text.append(name(OptionId::kQuiet));
  return text;
}

}  // namespace tessary
