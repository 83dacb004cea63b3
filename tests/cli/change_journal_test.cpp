// The journal of conversions, and the counts in summary, JSON and page.

#include "cli/change_journal.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "cli/tessary.h"
#include "platform/failure.h"
#include "support/failing_files.h"
#include "support/fake_console.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

class ChangeJournalTest : public testing::Test {
 protected:
  ChangeJournalTest() {
    memory_.Put("/old/Rechnung.lst", Report(3, "1000"));
    memory_.Put("/new/Rechnung.lst", Report(4, "2000"));
    memory_.PutFolder("/diff");
    memory_.Put("/rep/a.lst", Report(3, "1500"));
    memory_.Put("/rep/b.lst", SmallReport(3));
    EXPECT_EQ(Run({"diff-folder", "/old", "/new", "/diff"}), kExitDone);
  }
  static std::string Report(int version, const std::string& height) {
    return ReportText(version, "Rechnung",
                      {"[Layout]", "Height=" + height, "Width=1", "[Object]", "ObjectName=Kopf"});
  }
  int Run(const Words& arguments) {
    console_ = {};
    return RunTessary(arguments, console_, files_);
  }
  int Convert(Words more) {
    more.insert(more.begin(), {"convert-folder", "/diff", "/rep", "--journal", "/j.jsonl"});
    return Run(more);
  }
  std::vector<Json> Lines() const {
    std::vector<Json> lines;
    std::string text = memory_.Get("/j.jsonl");
    while (!text.empty()) {
      const auto end = text.find('\n');
      lines.push_back(ParseJson(text.substr(0, end)));
      text.erase(0, end + 1);
    }
    return lines;
  }

  MemoryFiles memory_;
  FailingFiles files_{memory_};
  FakeConsole console_;
};

TEST_F(ChangeJournalTest, NamesEveryDifferenceWithItsPlaceAndValues) {
  ASSERT_EQ(Convert({"--omit", "b.lst"}), kExitDone);
  const std::vector<Json> lines = Lines();
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0]["event"], "run");
  EXPECT_EQ(lines[0]["dry_run"], false);
  EXPECT_EQ(lines[1], ParseJson(R"({"event":"applied","report":"a.lst","from":3,"to":4,
      "change":"changed","section":["[UserSection]"],"element":"Version","old":"3","new":"4"})"));
  EXPECT_EQ(lines[2], ParseJson(R"({"event":"applied","report":"a.lst","from":3,"to":4,
      "change":"changed","section":["[Layout]"],"element":"Height","old":"1500","new":"2000"})"));
  EXPECT_EQ(lines[3]["event"], "step");
  EXPECT_EQ(lines[3]["done"], true);
  EXPECT_EQ(lines[3]["applied"], 2);
  EXPECT_EQ(lines[3]["skipped"], 0);
  EXPECT_EQ(lines[4], ParseJson(R"({"event":"end","result":true,"applied":2,"skipped":0})"));
}

TEST_F(ChangeJournalTest, SaysWhyADifferenceDidNothing) {
  memory_.Remove("/rep/a.lst");
  ASSERT_EQ(Convert({}), kExitDone);
  const std::vector<Json> lines = Lines();
  EXPECT_EQ(lines[2]["event"], "skipped");
  EXPECT_EQ(lines[2]["section"], ParseJson(R"(["[Layout]"])"));
  EXPECT_EQ(lines[2]["reason"], "section_not_found");
  EXPECT_EQ(lines[2]["text"], "Die Sektion darum ist im Bericht nicht vorhanden.");
  EXPECT_EQ(lines.back(), ParseJson(R"({"event":"end","result":true,"applied":1,"skipped":1})"));
}

TEST_F(ChangeJournalTest, CountsStandInSummaryJsonAndPage) {
  ASSERT_EQ(Convert({"--dry-run"}), kExitDone);
  EXPECT_TRUE(
      console_.out.ends_with("2 Berichte konvertiert, 3 Unterschiede angewendet, 1 ohne Wirkung\n"))
      << console_.out;
  EXPECT_EQ(Lines()[0]["dry_run"], true);
  ASSERT_EQ(Convert({"--dry-run", "--json"}), kExitDone);
  EXPECT_EQ(ParseJson(console_.out)["changes"], ParseJson(R"({"applied":3,"skipped":1})"));
  ASSERT_EQ(Convert({"--html", "/p.html"}), kExitDone);
  const std::string page = memory_.Get("/p.html");
  for (const char* text :
       {"<dt>Unterschiede angewendet</dt><dd>3</dd>", "<dt>Unterschied ohne Wirkung</dt><dd>1</dd>",
        "<h2 id=\"aenderungen\">Änderungen</h2>",
        "<bdi>a.lst von Version 3 nach 4: 2 angewendet, 0 ohne Wirkung</bdi>",
        "<bdi>geändert: Height von 1500 nach 2000</bdi><div class=\"more\"><bdi>[Layout]</bdi>",
        "<bdi>geändert: Height nach 2000</bdi>",
        "<bdi>Die Sektion darum ist im Bericht nicht vorhanden.</bdi>"}) {
    EXPECT_NE(page.find(text), std::string::npos) << text;
  }
}

TEST_F(ChangeJournalTest, ThePageShowsWhatIsNewAndWhatIsGone) {
  memory_.Put("/old/Rechnung.lst", ReportText(3, "Rechnung", {"[Layout]", "A=1", "Old=gone"}));
  memory_.Put("/new/Rechnung.lst",
              ReportText(4, "Rechnung", {"[Layout]", "A=1", "New=here", "[Object]", "LinkID=7"}));
  memory_.Put("/rep/a.lst", memory_.Get("/old/Rechnung.lst"));
  ASSERT_EQ(Run({"diff-folder", "/old", "/new", "/diff"}), kExitDone);
  ASSERT_EQ(Convert({"--omit", "b.lst", "--html", "/p.html"}), kExitDone);
  const std::string page = memory_.Get("/p.html");
  for (const char* text : {"<bdi>neu: New=here</bdi>", "<bdi>gelöscht: Old=gone</bdi>",
                           "<bdi>neu: [Object] 7</bdi>"}) {
    EXPECT_NE(page.find(text), std::string::npos) << text;
  }
}

TEST_F(ChangeJournalTest, AStepThatFailsHasChangedNothing) {
  memory_.SetReadOnly("/rep/a.lst");
  EXPECT_EQ(Convert({"--omit=b.lst"}), kExitFailed);
  const std::vector<Json> lines = Lines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[1]["done"], false);
  EXPECT_EQ(lines[1]["applied"], 0);
  EXPECT_EQ(lines[2], ParseJson(R"({"event":"end","result":false,"applied":0,"skipped":0})"));
}

TEST_F(ChangeJournalTest, OnlyAnEarlierJournalIsOverwritten) {
  EXPECT_EQ(Convert({"--dry-run"}), kExitDone);
  EXPECT_EQ(Convert({"--dry-run"}), kExitDone);
  memory_.Put("/j.jsonl", "{\"event\":\"other\"}");
  EXPECT_EQ(Convert({}), kExitWrongUsage);
  EXPECT_NE(console_.err.find("wird nicht überschrieben, weil sie kein Änderungsprotokoll ist."),
            std::string::npos)
      << console_.err;
  EXPECT_EQ(memory_.Get("/rep/a.lst"), Report(3, "1500"));
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--journal", "/none/j"}), kExitWrongUsage);
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--journal="}), kExitWrongUsage);
}

TEST_F(ChangeJournalTest, AJournalThatCannotBeWrittenAtTheEndFailsTheCommand) {
  files_.Reset();
  files_.FailCall(FileCall::kCommit, 1, kDiskFull);
  EXPECT_EQ(Convert({"--dry-run"}), kExitFailed);
  EXPECT_NE(console_.err.find("Das Änderungsprotokoll "), std::string::npos);
}

TEST(ReasonTexts, AreAllDifferent) {
  std::set<std::string_view> words;
  for (int reason = 0; reason <= static_cast<int>(SkipReason::kNothingInside); ++reason) {
    words.insert(ReasonId(static_cast<SkipReason>(reason)));
    words.insert(ReasonText(static_cast<SkipReason>(reason)));
  }
  EXPECT_EQ(words.size(), 2 * (static_cast<std::size_t>(SkipReason::kNothingInside) + 1));
}

}  // namespace
}  // namespace tessary
