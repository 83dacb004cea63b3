#include "cli/run_page.h"

#include <set>
#include <utility>

#include "cli/run_paths.h"
#include "platform/path.h"

namespace tessary {
namespace {

std::string Counted(std::size_t count, const char* one, const char* many) {
  return count == 1 ? one : many;
}

struct Counts {
  void Always(std::size_t count, std::string label, PageTone tone) {
    list.push_back({count, std::move(label), count > 0 ? tone : PageTone::kNeutral});
  }
  void IfAny(std::size_t count, std::string label, PageTone tone) {
    if (count > 0) Always(count, std::move(label), tone);
  }
  void PassedOver(std::size_t count) {
    IfAny(count, Counted(count, "Datei übergangen", "Dateien übergangen"), PageTone::kNeutral);
  }

  std::vector<PageCount> list;
};

std::vector<PageCount> CountsOf(const DiffSummary& summary) {
  Counts counts;
  counts.Always(summary.created,
                Counted(summary.created, "Differenz-Datei erstellt", "Differenz-Dateien erstellt"),
                PageTone::kCorrect);
  counts.Always(summary.failed, "fehlgeschlagen", PageTone::kError);
  counts.IfAny(
      summary.without_difference,
      Counted(summary.without_difference, "Bericht ohne Unterschied", "Berichte ohne Unterschied"),
      PageTone::kNeutral);
  if (summary.checked) {
    counts.Always(
        summary.not_reproduced,
        Counted(summary.not_reproduced, "Stelle nicht nachgebildet", "Stellen nicht nachgebildet"),
        PageTone::kWarning);
  }
  counts.PassedOver(summary.passed_over);
  return counts.list;
}

std::vector<PageCount> CountsOf(const ConvertSummary& summary) {
  Counts counts;
  std::string converted = Counted(summary.converted, "Bericht", "Berichte");
  if (summary.steps > summary.converted) {
    converted.append(" in ").append(std::to_string(summary.steps)).append(" Schritten");
  }
  counts.Always(summary.converted, converted.append(" konvertiert"), PageTone::kCorrect);
  counts.Always(summary.failed, "fehlgeschlagen", PageTone::kError);
  counts.IfAny(
      summary.changes.applied,
      Counted(summary.changes.applied, "Unterschied angewendet", "Unterschiede angewendet"),
      PageTone::kCorrect);
  counts.IfAny(
      summary.changes.skipped,
      Counted(summary.changes.skipped, "Unterschied ohne Wirkung", "Unterschiede ohne Wirkung"),
      PageTone::kNeutral);
  counts.IfAny(summary.skipped, "übersprungen", PageTone::kWarning);
  counts.IfAny(summary.unchanged.size(), "unverändert", PageTone::kNeutral);
  counts.IfAny(summary.omitted, "ausgelassen", PageTone::kNeutral);
  counts.PassedOver(summary.passed_over);
  return counts.list;
}

std::size_t FailedIn(const RunSummary& summary) {
  return std::visit([](const auto& counts) { return counts.failed; }, summary);
}

void SetOutcome(const RunOutcome& outcome, bool strict, ProtocolPage& page) {
  const std::size_t failed = FailedIn(outcome.summary);
  page.tone = PageTone::kError;
  if (failed > 0) {
    page.outcome = failed == 1 ? "Ein Fehler ist aufgetreten."
                               : std::to_string(failed) + " Fehler sind aufgetreten.";
  } else if (outcome.answered_no) {
    page.tone = PageTone::kWarning;
    page.outcome = outcome.result
                       ? "Abgeschlossen; wegen einer Antwort wurden Berichte übersprungen."
                       : "Nicht ausgeführt, weil eine Frage mit Nein beantwortet wurde.";
  } else if (outcome.result && strict && !AllReproduced(outcome.differences)) {
    page.outcome = "Verglichen, aber die neue Version wird nicht ganz nachgebildet.";
  } else if (outcome.result) {
    page.tone = PageTone::kCorrect;
    page.outcome = "Ohne Fehler abgeschlossen.";
  } else {
    page.outcome = "Der Vorgang ist fehlgeschlagen.";
  }
}

std::vector<PageFact> FactsOf(const CommandLine& line) {
  std::vector<PageFact> facts = {{"Befehl", CommandText(line)}};
  const auto path = [&](const char* label, std::size_t operand) {
    facts.push_back({label, OperandPath(line, operand)});
  };
  if (Converts(line)) {
    const bool folder = line.command == CommandId::kConvertFolder;
    path(folder ? "Berichte" : "Bericht", folder ? 1 : 0);
    path(folder ? "Differenz-Dateien" : "Differenz-Datei", folder ? 0 : 1);
    facts.push_back({"Sicherungen", FoldersOf(line).backups});
  } else {
    path("Alte Version", 0);
    path("Neue Version", 1);
    path("Differenz-Dateien", 2);
  }
  return facts;
}

std::string ChangeText(const Change& change) {
  const auto value = [](const std::string& text) { return text.empty() ? "(leer)" : text; };
  const auto line = [&](const std::string& text) {
    return change.element + (text.empty() ? "" : "=" + text);
  };
  switch (change.status) {
    case bxsDelete:
      return "gelöscht: " + line(change.old_value);
    case bxsNew:
      return "neu: " + line(change.new_value);
    case bxsUpdate:
      return "geändert: " + change.element + (change.skipped ? " nach " : " von ") +
             (change.skipped ? "" : value(change.old_value) + " nach ") + value(change.new_value);
    default:
      return change.element;
  }
}

PageDetails ChangesOf(const JournalStep& step) {
  PageDetails group;
  group.heading = FileNameOf(step.step.report_path) + " von Version " +
                  std::to_string(step.step.old_version) + " nach " +
                  std::to_string(step.step.new_version) + ": " + std::to_string(step.applied) +
                  " angewendet, " + std::to_string(step.skipped) + " ohne Wirkung";
  for (const Change& change : step.changes) {
    group.details.push_back({change.skipped ? PageTone::kWarning : PageTone::kCorrect,
                             ChangeText(change), PlaceText(change.place),
                             change.skipped ? std::string(ReasonText(*change.skipped)) : ""});
  }
  return group;
}

PageDetails PlacesOf(const CheckedDifference& checked) {
  PageDetails group{CheckHeading(checked), {}};
  if (!checked.failure.empty()) {
    group.details.push_back({PageTone::kWarning, checked.failure + ".", "", ""});
  }
  for (const Unreproduced& place : checked.places) {
    group.details.push_back({PageTone::kWarning,
                             std::string(DeviationText(place.reason)) + ": " + LineText(place),
                             PlaceText(place.place), FoundText(place)});
  }
  return group;
}

void AddNames(std::string label, const std::vector<std::string>& names, ProtocolPage& page) {
  if (!names.empty()) page.files.push_back({std::move(label), names});
}

void AddNames(std::string label, const std::set<std::string>& names, ProtocolPage& page) {
  AddNames(std::move(label), std::vector<std::string>(names.begin(), names.end()), page);
}

}  // namespace

ProtocolPage PageFor(const CommandLine& line, const RunOutcome& outcome, ProtocolTree tree,
                     std::optional<RepairGuide> repair) {
  ProtocolPage page{
      .title = Converts(line) ? "Berichtskonvertierung" : "Berichtsvergleich",
      .outcome = {},
      .tone = PageTone::kNeutral,
      .facts = FactsOf(line),
      .counts = std::visit([](const auto& s) { return CountsOf(s); }, outcome.summary),
      .tree = std::move(tree),
      .warnings = outcome.warnings,
      .files = {},
      .repair = std::move(repair)};
  for (const JournalStep& step : outcome.steps) {
    if (!step.changes.empty()) page.changes.push_back(ChangesOf(step));
  }
  for (const CheckedDifference& checked : outcome.differences) {
    if (!IsReproduced(checked)) page.unreproduced.push_back(PlacesOf(checked));
  }
  SetOutcome(outcome, line.strict, page);
  if (line.dry_run) page.outcome.insert(0, "Probelauf, nichts geschrieben: ");
  AddNames("Wegen einer Antwort übersprungen", outcome.files.skipped, page);
  if (const auto* converted = std::get_if<ConvertSummary>(&outcome.summary)) {
    AddNames("Ohne passende Differenz-Datei unverändert", converted->unchanged, page);
  }
  AddNames("Auf Wunsch ausgelassen", outcome.files.omitted, page);
  AddNames("Übergangen, weil keine Berichte", outcome.files.passed_over, page);
  return page;
}

}  // namespace tessary
