#include "cli/run_summary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessary {
namespace {

TEST(SummaryText, OfDifferenceFilesInSingularAndPlural) {
  EXPECT_EQ(SummaryText(DiffSummary{}), "0 Differenz-Dateien erstellt");
  EXPECT_EQ(SummaryText(DiffSummary{1, 0, 0, 0}), "1 Differenz-Datei erstellt");
  EXPECT_EQ(SummaryText(DiffSummary{2, 1, 1, 1}),
            "2 Differenz-Dateien erstellt, 1 Bericht ohne Unterschied, 1 fehlgeschlagen, "
            "1 Datei übergangen (kein Bericht)");
  EXPECT_EQ(SummaryText(DiffSummary{0, 2, 3, 2}),
            "0 Differenz-Dateien erstellt, 2 Berichte ohne Unterschied, 3 fehlgeschlagen, "
            "2 Dateien übergangen (keine Berichte)");
}

TEST(SummaryText, OfAConversionInSingularAndPlural) {
  EXPECT_EQ(SummaryText(ConvertSummary{}), "0 Berichte konvertiert");
  EXPECT_EQ(SummaryText(ConvertSummary{1, 1, 0, 0, 0, 0, {}}), "1 Bericht konvertiert");
  EXPECT_EQ(SummaryText(ConvertSummary{3, 3, 1, 0, 0, 2, {}}),
            "3 Berichte konvertiert, 1 fehlgeschlagen, 2 Dateien übergangen (keine Berichte)");
  EXPECT_EQ(SummaryText(ConvertSummary{1, 2, 0, 1, 1, 1, {"a.lst"}}),
            "1 Bericht in 2 Schritten konvertiert, 1 unverändert, 1 übersprungen, "
            "1 ausgelassen, 1 Datei übergangen (kein Bericht)");
}

void Convert(ResultLog& log, const std::string& name, int from) {
  log.AddToResultLog("Der Bericht " + name + " wurde erfolgreich von Version " +
                         std::to_string(from) + " nach " + std::to_string(from + 1) +
                         " konvertiert.",
                     false);
}

TEST(SummariseConversion, CountsReportsNotSteps) {
  ResultLog log;
  Convert(log, "a.lst", 3);
  Convert(log, "a.lst", 4);
  Convert(log, "b.lst", 4);
  Convert(log, "c.lst", 3);
  log.AddToResultLog("Konvertierung des Berichts c.lst von Version 4 nach 5 fehlgeschlagen.", true);
  log.AddToResultLog("Konvertierung des Berichts d.lst fehlgeschlagen.", true);
  ConvertRun run;
  run.seen = {"a.lst", "b.lst", "c.lst", "d.lst", "e.lst", "f.txt", "g.lst", "h.lst"};
  run.passed_over = {"f.txt"};
  run.omitted = {"g.lst"};
  run.skipped = {"h.lst"};
  const ConvertSummary summary = SummariseConversion(log, run);
  EXPECT_EQ(summary.converted, 2u);
  EXPECT_EQ(summary.steps, 3u);
  EXPECT_EQ(summary.failed, 2u);
  EXPECT_EQ(summary.unchanged, std::vector<std::string>{"e.lst"});
  EXPECT_EQ(summary.skipped, 1u);
  EXPECT_EQ(summary.omitted, 1u);
  EXPECT_EQ(summary.passed_over, 1u);
}

TEST(SummariseConversion, KnowsNamesThatReadLikeTheSentence) {
  const std::string name = "x wurde erfolgreich von Version 1 nach 2 konvertiert..lst";
  ResultLog log;
  Convert(log, name, 3);
  ConvertRun run;
  run.seen = {name};
  EXPECT_EQ(SummariseConversion(log, run).converted, 1u);
}

TEST(SummariseConversion, CountsNamesThatShareASentenceByTheirCase) {
  ResultLog log;
  Convert(log, "a.lst", 3);
  Convert(log, "A.LST", 3);
  ConvertRun run;
  run.seen = {"A.LST", "a.lst"};
  EXPECT_EQ(SummariseConversion(log, run).converted, 2u);
}

TEST(SummariseConversion, CallsNoReportUnchangedAfterAFailureOfTheWholeRun) {
  ResultLog log;
  log.AddToResultLog("Konvertierung ist für alle Berichte in /b fehlgeschlagen.", true);
  ConvertRun run;
  run.seen = {"a.lst"};
  EXPECT_TRUE(SummariseConversion(log, run).unchanged.empty());
}

TEST(SummariseDiff, TellsFilesFromPairsWithoutADifference) {
  ResultLog log;
  log.AddToResultLog(
      "Die Differenz-Datei 3_4A für den Bericht A von Version 3 nach 4 wurde erfolgreich "
      "erstellt.",
      false);
  log.AddToResultLog(
      "Die Differenz-Datei  für den Bericht B von Version 3 nach 4 wurde erfolgreich erstellt.",
      false);
  log.AddToResultLog("Vergleich mit dem Bericht c.lst fehlgeschlagen.", true);
  const DiffSummary summary = SummariseDiff(log, {"x", "y"});
  EXPECT_EQ(summary.created, 1u);
  EXPECT_EQ(summary.without_difference, 1u);
  EXPECT_EQ(summary.failed, 1u);
  EXPECT_EQ(summary.passed_over, 2u);
}

}  // namespace
}  // namespace tessary
