#include "manager/backup.h"

#include <utility>
#include <vector>

#include "engine/procedure.h"
#include "platform/failure.h"
#include "platform/path.h"
#include "platform/path_syntax.h"
#include "platform/text.h"

namespace tessary {
namespace {

constexpr int kMostOlderCopies = 100000;
constexpr std::string_view kReplacedMark = "ersetzt";

// A question is asked with the default pointer.
Answer Ask(const Surroundings& around, const std::string& question) {
  around.user.SetMousePointer(MousePointer::kDefault);
  return around.user.Ask(question);
}

std::string FolderQuestion(const std::string& folder) {
  return "Das BackUp-Verzeichnis " + folder +
         " konnte nicht erstellt werden. Die Berichte werden ohne Sicherung überschrieben.\r\n"
         "Falls Probleme bei der Konvertierung auftreten, können Programmteile möglicherweise "
         "nicht mehr richtig ausgeführt werden.\r\n"
         "Konvertierung trotzdem durchführen?";
}

std::string ReportQuestion(const std::string& file_name) {
  return "Der Bericht " + file_name +
         " konnte nicht gesichert werden.\r\n"
         "Falls Probleme bei der Konvertierung auftreten, kann der Bericht beschädigt und "
         "Programmteile möglicherweise nicht mehr richtig ausgeführt werden.\r\n"
         "Konvertierung für diesen Bericht trotzdem durchführen?";
}

// True unless it is certain that there is no such file: what cannot be looked at is not
// overwritten.
bool MayExist(FileSystem& files, const std::string& path) {
  try {
    files.OpenForReading(path);
    return true;
  } catch (const Failure& failure) {
    return failure.number() != kFileNotFound;
  }
}

// Moves a copy that is about to be replaced by other contents out of the way, so that the
// original survives any number of runs. Returns its new name; empty when nothing had to be moved.
std::string KeepOlderCopy(const Surroundings& around, const std::string& folder,
                          const std::string& file_name, const std::string& report) {
  const std::string copy = JoinPath(folder, file_name);
  if (!MayExist(around.files, copy) || around.files.SameContents(copy, report)) return {};
  int number = 1;
  while (around.files.FileExists(JoinPath(folder, OlderCopyName(file_name, number)))) {
    if (++number > kMostOlderCopies) throw Failure(kFileExists);
  }
  std::string kept = OlderCopyName(file_name, number);
  around.files.RenameFile(copy, JoinPath(folder, kept));
  return kept;
}

// Runs in other folders may save reports of the same name here at the same time: what they put
// there in between is an older copy like any other. Fills `kept` with the new names of those.
void Save(const Surroundings& around, const std::string& folder, const std::string& file_name,
          const std::string& report, std::vector<std::string>& kept) {
  constexpr int kMostAttempts = 100;
  for (int attempt = 1; attempt <= kMostAttempts; ++attempt) {
    if (around.files.AddCopy(report, JoinPath(folder, file_name))) return;
    std::string name = KeepOlderCopy(around, folder, file_name, report);
    if (!name.empty()) kept.push_back(std::move(name));
  }
  throw Failure(kFileExists);
}

// Without a new copy the older one is all there is to restore a report from.
void TakeBackOlderCopy(const Surroundings& around, const std::string& folder,
                       const std::string& file_name, const std::string& kept) {
  try {
    around.files.RenameFile(JoinPath(folder, kept), JoinPath(folder, file_name));
  } catch (const Failure&) {
    // It stays safe under its other name.
  }
}

void TellOfOlderCopy(const Surroundings& around, const std::string& folder,
                     const std::string& file_name, const std::string& kept) {
  if (!around.notices) return;
  around.notices->Warning("Im Sicherungsverzeichnis " + folder +
                          " lag bereits eine andere Fassung von " + file_name +
                          "; sie bleibt dort als " + kept + " erhalten.");
}

}  // namespace

// A root keeps its separator, without which its name would mean another folder.
std::string DefaultBackupFolder(const std::string& report_folder) {
  const bool is_root = report_folder.size() <= PathRootLength(report_folder);
  return std::string(is_root ? std::string_view(report_folder)
                             : WithoutTrailingSeparator(report_folder)) +
         "Bak";
}

// Names of older copies keep clear of every rule that takes files for input: they begin with "~",
// and their extension holds one.
std::string OlderCopyName(const std::string& file_name, int number) {
  return "~" + file_name + ".~" + std::to_string(number);
}

std::string ReplacedCopyName(const std::string& file_name, int number) {
  return "~" + file_name + ".~" + std::string(kReplacedMark) + std::to_string(number);
}

std::string ReportOfOlderCopy(const std::string& copy_name) {
  const auto number = copy_name.rfind(".~");
  if (number == std::string::npos || number < 2 || copy_name[0] != '~') return {};
  std::string_view digits = std::string_view(copy_name).substr(number + 2);
  if (digits.starts_with(kReplacedMark)) digits.remove_prefix(kReplacedMark.size());
  const bool is_number = !digits.empty() && digits.find_first_not_of("0123456789") == digits.npos;
  return is_number ? copy_name.substr(1, number - 1) : std::string();
}

BackupFolder CreateBackupFolder(const Surroundings& around, const std::string& report_folder,
                                const std::string& wanted) {
  BackupFolder folder{std::string(TrimBlanks(wanted))};
  try {
    if (folder.path.empty()) folder.path = DefaultBackupFolder(report_folder);
    if (around.files.FolderExists(folder.path)) return folder;
    around.files.CreateFolder(folder.path);
    if (!around.files.FolderExists(folder.path)) throw Failure(kNoBackupFolder);
  } catch (const Failure&) {
    folder.skip = true;
    folder.answer = Ask(around, FolderQuestion(folder.path));
  }
  return folder;
}

Answer BackupReport(const Surroundings& around, const std::string& backup_folder,
                    const std::string& report_folder, const std::string& file_name) {
  const std::string report = JoinPath(report_folder, file_name);
  std::vector<std::string> kept;
  try {
    Save(around, backup_folder, file_name, report, kept);
  } catch (const Failure&) {
    if (!kept.empty()) TakeBackOlderCopy(around, backup_folder, file_name, kept.back());
    return Ask(around, ReportQuestion(file_name));
  }
  for (const std::string& name : kept) TellOfOlderCopy(around, backup_folder, file_name, name);
  return Answer::kYes;
}

void RestoreFile(const Surroundings& around, ErrorCollection& errors,
                 const std::string& backup_folder, const std::string& file_name,
                 const std::string& target) {
  try {
    around.files.CopyFile(JoinPath(backup_folder, file_name), target);
  } catch (const Failure& failure) {
    errors.Add({ErrorEntry::kNotRestored, failure.number(),
                SourceText("BXConvertLLMgr", "RestoreFile"),
                "Die Datei " + file_name +
                    " wurde möglicherweise beschädigt und konnte nicht wiederhergestellt werden. "
                    "Bitte versuchen Sie die Datei manuell wiederherzustellen."});
  }
}

}  // namespace tessary
