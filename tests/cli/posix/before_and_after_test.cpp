// The built program on the samples, as an administrator uses it: make difference files and verify
// them, check, try, convert with a journal, look, take it back.

#ifdef TESSARY_BINARY

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "e2e/samples.h"
#include "support/json.h"
#include "support/real_files_test_base.h"
#include "support/run_program.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

std::vector<Json> JsonLines(std::string text) {
  std::vector<Json> lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    lines.push_back(ParseJson(text.substr(0, end)));
    text.erase(0, end + 1);
  }
  return lines;
}

std::size_t CountOf(const std::vector<Json>& lines, const std::string& event) {
  return static_cast<std::size_t>(std::count_if(
      lines.begin(), lines.end(), [&](const Json& line) { return line["event"] == event; }));
}

class BeforeAndAfterTest : public RealFilesTest {
 protected:
  BeforeAndAfterTest() {
    CopySample("hersteller", In("hersteller"));
    CopySample("kunde/Berichte", In("Berichte"));
    PutFolder("diff");
  }
  ProgramResult Run(const Words& arguments) const {
    return RunProgram({TESSARY_BINARY, arguments, {}, folder_.path()});
  }
  ProgramResult Compare(const std::string& from, const std::string& to, Words more = {}) const {
    more.insert(more.begin(),
                {"diff-folder", "hersteller/version" + from, "hersteller/version" + to, "diff"});
    return Run(more);
  }
  ProgramResult Convert(Words more) const {
    more.insert(more.begin(), {"convert-folder", "diff", "Berichte"});
    return Run(more);
  }
  void MakeDifferences() const {
    ASSERT_EQ(Compare("3", "4").exit_code, 0);
    ASSERT_EQ(Compare("4", "5").exit_code, 0);
  }
  std::map<std::string, std::string> Files() const { return FilesBelow(folder_.path()); }
};

TEST_F(BeforeAndAfterTest, VerifyNamesLinesOfTheNewVersion) {
  for (const char* to : {"4", "5"}) {
    const std::string from = *to == '4' ? "3" : "4";
    const ProgramResult result = Compare(from, to, {"--verify", "--json"});
    EXPECT_EQ(result.exit_code, 0) << "it is information";
    std::size_t places = 0;
    const Json object = ParseJson(result.out);
    for (const Json& pair : object["verification"]) {
      const std::vector<std::string> lines = LinesOf(pair["new"].get<std::string>());
      for (const Json& place : pair["not_reproduced"]) {
        ++places;
        const std::string wanted = place["wanted"];
        const std::string& line = lines.at(place["line"].get<std::size_t>() - 1);
        // Of a section the file has only the name there.
        const std::string name = wanted.substr(0, wanted.find(wanted[0] == '[' ? ' ' : '\n'));
        EXPECT_NE(line.find(name), std::string::npos) << place;
      }
    }
    EXPECT_GT(places, 0u);
    EXPECT_EQ(Compare(from, to, {"--verify", "--strict"}).exit_code, 1);
  }
  const ProgramResult text = Compare("4", "5", {"--verify"});
  EXPECT_NE(text.out.find("  verschoben: Zeile "), std::string::npos);
  EXPECT_NE(text.out.find("  nur Groß- und Kleinschreibung: "), std::string::npos);
  EXPECT_NE(text.out.find("  Block unter einer Eigenschaft: "), std::string::npos);
}

TEST_F(BeforeAndAfterTest, CheckFindsTheGap) {
  MakeDifferences();
  const auto before = Files();
  EXPECT_EQ(Run({"check", "diff", "Berichte"}).exit_code, 0);
  const Json whole = ParseJson(Run({"check", "diff", "Berichte", "--json"}).out);
  EXPECT_EQ(whole["reports"].size(), 6u);
  EXPECT_EQ(whole["not_reports"].size(), 5u);
  EXPECT_EQ(whole["same_difference_file"].size(), 2u);
  EXPECT_EQ(Files(), before);

  std::filesystem::remove(In("diff/3_4Rechnung"));
  const ProgramResult gap = Run({"check", "diff", "Berichte", "--quiet"});
  EXPECT_EQ(gap.exit_code, 1);
  const std::string why =
      "Version 3, Referenz Rechnung\n"
      "        Hinweis Von Version 3 führt keine Differenz-Datei weiter; die nächste ist "
      "4_5Rechnung.\n";
  EXPECT_EQ(gap.out, "FEHLER  Rechnung Österreich.lst: " + why + "FEHLER  Rechnung.lst: " + why);

  EXPECT_EQ(Run({"check", "diff"}).exit_code, 2);
  EXPECT_EQ(Run({"check", "nirgends", "Berichte"}).exit_code, 1);
}

TEST_F(BeforeAndAfterTest, TheJournalOfATrialIsThatOfTheRun) {
  MakeDifferences();
  const auto before = FilesBelow(In("Berichte"));
  const ProgramResult trial = Convert({"--dry-run", "--journal", "probe.jsonl", "--json"});
  EXPECT_EQ(trial.exit_code, 0);
  EXPECT_EQ(FilesBelow(In("Berichte")), before);
  EXPECT_FALSE(std::filesystem::exists(In("BerichteBak")));
  const ProgramResult run = Convert({"--journal", "lauf.jsonl", "--html", "lauf.html"});
  EXPECT_EQ(run.exit_code, 0);

  std::vector<Json> tried = JsonLines(Get("probe.jsonl"));
  const std::vector<Json> done = JsonLines(Get("lauf.jsonl"));
  EXPECT_EQ(tried[0]["dry_run"], true);
  tried[0] = done[0];
  EXPECT_EQ(tried, done);
  const Json& end = done.back();
  EXPECT_EQ(end["result"], true);
  EXPECT_EQ(CountOf(done, "step"), 11u);
  EXPECT_EQ(CountOf(done, "applied"), end["applied"]);
  EXPECT_EQ(CountOf(done, "skipped"), end["skipped"]);
  EXPECT_EQ(ParseJson(trial.out)["changes"]["applied"], end["applied"]);
  const std::string counts = end["applied"].dump() + " Unterschiede angewendet, " +
                             end["skipped"].dump() + " ohne Wirkung";
  EXPECT_NE(run.out.find(counts), std::string::npos) << run.out;
  const std::string page = Get("lauf.html");
  EXPECT_NE(page.find("<dd>" + end["applied"].dump() + "</dd>"), std::string::npos);
  EXPECT_NE(page.find("Das Element ist im Bericht nicht vorhanden."), std::string::npos);
}

// A changed value stands in the report that the run has written.
TEST_F(BeforeAndAfterTest, TheJournalTellsTheTruthAboutValues) {
  MakeDifferences();
  ASSERT_EQ(Compare("3", "4").exit_code, 0);
  const ProgramResult run =
      Run({"convert", "Berichte/Rechnung.lst", "diff/3_4Rechnung", "--journal", "j"});
  ASSERT_EQ(run.exit_code, 0);
  const std::vector<std::string> before = LinesOf(In("BerichteBak/Rechnung.lst"));
  const std::vector<std::string> after = LinesOf(In("Berichte/Rechnung.lst"));
  const auto has = [](const std::vector<std::string>& lines, const std::string& value) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return line.ends_with(value); });
  };
  int changed = 0;
  for (const Json& line : JsonLines(Get("j"))) {
    if (line["event"] != "applied" || line["change"] != "changed") continue;
    ++changed;
    EXPECT_TRUE(has(before, line["old"])) << line;
    EXPECT_TRUE(has(after, line["new"])) << line;
  }
  EXPECT_GT(changed, 2);
}

TEST_F(BeforeAndAfterTest, TheJournalOfARunThatFails) {
  MakeDifferences();
  Put("diff/4_5Rechnung", "\xEF\xBB\xBF");
  EXPECT_EQ(Convert({"--journal", "j"}).exit_code, 1);
  const std::vector<Json> lines = JsonLines(Get("j"));
  EXPECT_EQ(lines.back()["result"], false);
  std::set<std::string> failed;
  for (const Json& line : lines) {
    if (line["event"] == "step" && line["done"] == false) failed.insert(line["report"]);
  }
  EXPECT_EQ(failed, (std::set<std::string>{"Rechnung.lst", "Rechnung Österreich.lst"}));
  EXPECT_EQ(Convert({"--journal", "nirgends/j"}).exit_code, 2);
  EXPECT_EQ(Convert({"--journal", "x", "--html", "x"}).exit_code, 2);
  EXPECT_FALSE(std::filesystem::exists(In("x")));
}

TEST_F(BeforeAndAfterTest, RestoreTakesTheRunBack) {
  MakeDifferences();
  const auto original = FilesBelow(In("Berichte"));
  ASSERT_EQ(Convert({}).exit_code, 0);
  const auto converted = Files();
  const ProgramResult trial = Run({"restore", "BerichteBak", "Berichte", "--dry-run"});
  EXPECT_EQ(trial.exit_code, 0);
  EXPECT_NE(trial.out.find("Probelauf, nichts geschrieben: 6 Berichte"), std::string::npos);
  EXPECT_EQ(Files(), converted);

  EXPECT_EQ(Run({"restore", "BerichteBak", "Berichte", "Rechnung Österreich.lst"}).exit_code, 0);
  EXPECT_EQ(Get("Berichte/Rechnung Österreich.lst"), original.at("Rechnung Österreich.lst"));
  EXPECT_NE(Get("Berichte/Rechnung.lst"), original.at("Rechnung.lst"));
  EXPECT_EQ(Run({"restore", "BerichteBak", "Berichte"}).exit_code, 0);
  EXPECT_EQ(FilesBelow(In("Berichte")), original);

  EXPECT_EQ(Run({"restore", "BerichteBak", "Berichte", "Mahnung.lst"}).exit_code, 1);
  EXPECT_EQ(Run({"restore", "BerichteBak"}).exit_code, 2);
  std::filesystem::create_directory_symlink("Berichte", In("Verweis"));
  EXPECT_EQ(Run({"restore", "Verweis", "Berichte"}).exit_code, 2);
  EXPECT_EQ(Run({"restore", "nirgends", "Berichte"}).exit_code, 1);
  EXPECT_EQ(FilesBelow(In("Berichte")), original);
}

TEST_F(BeforeAndAfterTest, ExplainKnowsWhatTheRunSays) {
  const ProgramResult failing = Run({"convert-folder", "nirgends", "Berichte"});
  EXPECT_EQ(failing.exit_code, 1);
  const ProgramResult explained = Run({"explain", failing.out.substr(0, failing.out.find('\n'))});
  EXPECT_EQ(explained.exit_code, 0) << failing.out;
  EXPECT_NE(explained.out.find("  Ursache: "), std::string::npos);
  EXPECT_EQ(Run({"explain", "Das sagt niemand"}).exit_code, 1);
}

}  // namespace
}  // namespace tessary

#endif  // TESSARY_BINARY
