// The result log knows reports only by their sentences, one for each step from version to version,
// so the reports are told apart by the names in the sentences.

#include "cli/run_summary.h"

#include <string_view>
#include <unordered_map>

#include "platform/text.h"

namespace tessary {
namespace {

constexpr std::string_view kDiffBegin = "Die Differenz-Datei ";
constexpr std::string_view kConvertedBegin = "Der Bericht ";
constexpr std::string_view kConvertedEnd = " wurde erfolgreich von Version ";
constexpr std::string_view kFailedBegin = "Konvertierung des Berichts ";
constexpr std::string_view kAllFailedBegin = "Konvertierung ist für alle Berichte in ";

// "1 Bericht", "2 Berichte".
std::string Counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count).append(" ").append(count == 1 ? one : many);
}

void AppendCount(std::size_t count, std::string_view what, std::string& text) {
  if (count > 0) text.append(", ").append(std::to_string(count)).append(" ").append(what);
}

void AppendPassedOver(std::size_t count, std::string& text) {
  if (count == 0) return;
  text.append(", ").append(
      Counted(count, "Datei übergangen (kein Bericht)", "Dateien übergangen (keine Berichte)"));
}

// How many steps each report took, by its folded name. A name may hold anything, so the end of the
// sentence is looked for from behind.
std::unordered_map<std::string, std::size_t> StepsOfReports(const ResultDictionary& log) {
  std::unordered_map<std::string, std::size_t> steps;
  for (const auto& item : log.items()) {
    const std::string_view text = item.text;
    const auto end = text.rfind(kConvertedEnd);
    if (!text.starts_with(kConvertedBegin) || end == std::string_view::npos) continue;
    ++steps[FoldCase(text.substr(kConvertedBegin.size(), end - kConvertedBegin.size()))];
  }
  return steps;
}

// What stands in front of the versions in the sentence about a failed report, folded.
std::string FailedName(std::string_view text) {
  text.remove_prefix(kFailedBegin.size());
  const auto version = text.rfind(" von Version ");
  const auto end = version == std::string_view::npos ? text.rfind(" fehlgeschlagen.") : version;
  return FoldCase(text.substr(0, end));
}

struct Failures {
  std::set<std::string> reports;
  bool all = false;
};

Failures FailuresIn(const ResultDictionary& log) {
  Failures failures;
  for (const auto& item : log.items()) {
    if (item.text.starts_with(kFailedBegin)) failures.reports.insert(FailedName(item.text));
    if (item.text.starts_with(kAllFailedBegin)) failures.all = true;
  }
  return failures;
}

}  // namespace

DiffSummary SummariseDiff(const ResultLog& log, const std::set<std::string>& passed_over) {
  DiffSummary summary;
  for (const auto& item : log.dictCorrect.items()) {
    // Without a difference there is no file, and no name in the sentence.
    const bool named = !std::string_view(item.text).substr(kDiffBegin.size()).starts_with(' ');
    ++(named ? summary.created : summary.without_difference);
  }
  summary.failed = log.dictErrors.items().size();
  summary.passed_over = passed_over.size();
  return summary;
}

ConvertSummary SummariseConversion(const ResultLog& log, const ConvertRun& run) {
  ConvertSummary summary;
  const auto steps = StepsOfReports(log.dictCorrect);
  const Failures failures = FailuresIn(log.dictErrors);
  for (const std::string& name : run.seen) {
    if (run.omitted.contains(name) || run.passed_over.contains(name) ||
        run.skipped.contains(name) || failures.reports.contains(FoldCase(name))) {
      continue;
    }
    const auto found = steps.find(FoldCase(name));
    if (found != steps.end()) {
      ++summary.converted;
      summary.steps += found->second;
    } else if (!failures.all) {
      summary.unchanged.push_back(name);
    }
  }
  summary.changes = run.changes;
  summary.failed = log.dictErrors.items().size();
  summary.skipped = run.skipped.size();
  summary.omitted = run.omitted.size();
  summary.passed_over = run.passed_over.size();
  return summary;
}

std::string SummaryText(const DiffSummary& summary) {
  std::string text = Counted(summary.created, "Differenz-Datei", "Differenz-Dateien") + " erstellt";
  if (summary.without_difference > 0) {
    text.append(", ")
        .append(Counted(summary.without_difference, "Bericht", "Berichte"))
        .append(" ohne Unterschied");
  }
  AppendCount(summary.failed, "fehlgeschlagen", text);
  AppendPassedOver(summary.passed_over, text);
  AppendCount(
      summary.not_reproduced,
      summary.not_reproduced == 1 ? "Stelle nicht nachgebildet" : "Stellen nicht nachgebildet",
      text);
  return text;
}

std::string SummaryText(const ConvertSummary& summary) {
  std::string text = Counted(summary.converted, "Bericht", "Berichte");
  if (summary.steps > summary.converted) {
    text.append(" in ").append(Counted(summary.steps, "Schritt", "Schritten"));
  }
  text.append(" konvertiert");
  AppendCount(summary.changes.applied,
              summary.changes.applied == 1 ? "Unterschied angewendet" : "Unterschiede angewendet",
              text);
  AppendCount(summary.changes.skipped, "ohne Wirkung", text);
  AppendCount(summary.failed, "fehlgeschlagen", text);
  AppendCount(summary.unchanged.size(), "unverändert", text);
  AppendCount(summary.skipped, "übersprungen", text);
  AppendCount(summary.omitted, "ausgelassen", text);
  AppendPassedOver(summary.passed_over, text);
  return text;
}

}  // namespace tessary
