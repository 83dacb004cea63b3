#include "cli/repair_steps.h"

#include <utility>

#include "cli/run_paths.h"

namespace tessary {
namespace {

// A file named without its folder has none where the current one is gone.
RepairStep About(std::string text, std::string value) {
  return {std::move(text), value.empty() ? "(nicht angegeben)" : std::move(value)};
}

// Where nothing could be saved there is no copy to go back to.
RepairStep LastResort(const std::string& backups, FileSystem& files) {
  if (files.FolderExists(backups)) {
    return {
        "Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit den "
        "Ursprungsberichten im Verzeichnis:",
        backups};
  }
  return {
      "Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit Ihren "
      "eigenen Sicherungen; dieser Lauf hat keine angelegt.",
      {}};
}

RepairGuide AfterConverting(const CommandLine& line, FileSystem& files) {
  const ConversionFolders folders = FoldersOf(line);
  return {
      "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile "
      "möglicherweise nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen zu "
      "korrigieren:",
      {{"Starten Sie die Konvertierung erneut über:", CommandText(line)},
       About("Wählen Sie das Verzeichnis für die Differenz-Berichte aus:", folders.differences),
       About("Wählen Sie das Verzeichnis für die Berichte aus:", folders.reports),
       {"Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.).", {}},
       LastResort(folders.backups, files)}};
}

RepairGuide AfterComparing(const CommandLine& line) {
  return {
      "Zu den fehlerhaften Berichten gibt es keine neue Differenz-Datei. Bitte versuchen Sie "
      "diese Berichte folgendermaßen zu korrigieren:",
      {{"Beheben Sie, was bei den fehlerhaften Berichten gemeldet ist (s. o.).", {}},
       About("Prüfen Sie die alte Version unter:", OperandPath(line, 0)),
       About("Prüfen Sie die neue Version unter:", OperandPath(line, 1)),
       About("Prüfen Sie das Verzeichnis für die Differenz-Berichte:", OperandPath(line, 2)),
       {"Starten Sie den Vergleich erneut über:", CommandText(line)}}};
}

}  // namespace

RepairGuide RepairStepsFor(const CommandLine& line, FileSystem& files) {
  return Converts(line) ? AfterConverting(line, files) : AfterComparing(line);
}

}  // namespace tessary
