// --verify and --strict of the comparisons, and the command that restores.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/tessary.h"
#include "platform/path.h"
#include "support/fake_console.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

class VerifyTest : public testing::Test {
 protected:
  VerifyTest() {
    files_.Put("/old/a.lst", ReportText(3, "A", {"[Layout]", "X=abc", "Y=1", "Z=1"}));
    files_.Put("/new/a.lst", ReportText(4, "A", {"[Layout]", "X=ABC", "Z=1", "Y=1"}));
    files_.Put("/old/b.lst", SmallReport(3));
    files_.Put("/new/b.lst", SmallReport(4));
    files_.PutFolder("/diff");
  }
  int Run(const Words& arguments) {
    console_ = {};
    return RunTessary(arguments, console_, files_);
  }
  int Compare(Words more) {
    more.insert(more.begin(), {"diff-folder", "/old", "/new", "/diff"});
    return Run(more);
  }
  bool Printed(const std::string& text) const {
    return console_.out.find(text) != std::string::npos;
  }

  MemoryFiles files_;
  FakeConsole console_;
};

TEST_F(VerifyTest, ListsWhatDoesNotComeAbout) {
  EXPECT_EQ(Compare({"--verify"}), kExitDone) << "it is information";
  EXPECT_TRUE(
      Printed("Nicht nachgebildet: a.lst (3_4A): 2 Stellen\n"
              "  verschoben: [Layout]: Zeile 6: Z=1\n"
              "  nur Groß- und Kleinschreibung: [Layout]: Zeile 5: X=ABC (im Ergebnis: "
              "X=abc)\n"
              "2 Differenz-Dateien erstellt, 2 Stellen nicht nachgebildet\n"))
      << console_.out;
  EXPECT_EQ(Compare({}), kExitDone);
  EXPECT_FALSE(Printed("nachgebildet"));
}

TEST_F(VerifyTest, StrictMakesItAFailure) {
  EXPECT_EQ(Compare({"--verify", "--strict"}), kExitFailed);
  EXPECT_EQ(Compare({"--verify", "--strict", "--quiet"}), kExitFailed);
  EXPECT_TRUE(console_.out.starts_with("Nicht nachgebildet: a.lst")) << console_.out;
  EXPECT_EQ(Run({"diff", "/old/b.lst", "/new/b.lst", "/diff", "--verify", "--strict"}), kExitDone);
  EXPECT_TRUE(Printed("Nachprüfung: Die neue Version wird ganz nachgebildet.\n"));
  EXPECT_EQ(Compare({"--strict"}), kExitWrongUsage);
  EXPECT_TRUE(
      console_.err.starts_with("tessary: Die Option „--strict“ verlangt die Option „--verify“."));
}

TEST_F(VerifyTest, ADifferenceThatALaterOneReplacesIsNotGood) {
  files_ = MemoryFiles();
  for (const char* name : {"a.lst", "b.lst"}) {
    files_.Put(std::string("/old/") + name, SmallReport(3));
    files_.Put(std::string("/new/") + name, SmallReport(4));
  }
  files_.PutFolder("/diff");
  EXPECT_EQ(Compare({"--verify", "--json"}), kExitDone);
  const Json object = ParseJson(console_.out);
  EXPECT_EQ(object["verification"][0]["failure"],
            "Die Differenz-Datei wurde durch die des Berichts b.lst ersetzt");
  EXPECT_FALSE(object["verification"][1].contains("failure"));
  EXPECT_EQ(Compare({"--verify", "--strict", "--html", "/p.html"}), kExitFailed);
  EXPECT_NE(files_.Get("/p.html").find("<bdi>a.lst (3_4Rechnung): nicht nachgeprüft</bdi>"),
            std::string::npos);
  EXPECT_TRUE(
      Printed("Nicht nachgeprüft: a.lst (3_4Rechnung): Die Differenz-Datei wurde durch die "
              "des Berichts b.lst ersetzt.\n"))
      << console_.out;
  EXPECT_FALSE(Printed("ganz nachgebildet"));
  files_.Put("/new/b.lst", SmallReport(5));
  EXPECT_EQ(Compare({"--verify", "--strict"}), kExitDone) << "two files";
}

TEST_F(VerifyTest, ASectionIsNamedWithWhatTellsItFromOthers) {
  const std::vector<std::string> one = {"[Object]", "LinkID=1", "ObjectName=Kopf"};
  const std::vector<std::string> two = {"[Object]", "LinkID=2", "ObjectName=Fuß"};
  std::vector<std::string> lines = one;
  lines.insert(lines.end(), two.begin(), two.end());
  files_.Put("/old/a.lst", ReportText(3, "A", lines));
  lines = two;
  lines.insert(lines.end(), one.begin(), one.end());
  files_.Put("/new/a.lst", ReportText(4, "A", lines));
  EXPECT_EQ(Run({"diff", "/old/a.lst", "/new/a.lst", "/diff", "--verify"}), kExitDone);
  EXPECT_TRUE(Printed("  verschoben: Zeile 4: [Object] 2 Fuß\n")) << console_.out;
}

TEST_F(VerifyTest, JsonAndPageHoldThePlaces) {
  EXPECT_EQ(Compare({"--verify", "--json", "--html", "/p.html"}), kExitDone);
  const Json object = ParseJson(console_.out);
  ASSERT_EQ(object["verification"].size(), 2u);
  EXPECT_EQ(object["verification"][0]["not_reproduced"][1],
            ParseJson(R"({"reason":"letter_case","section":["[Layout]"],"line":5,
                "wanted":"X=ABC","found":"X=abc"})"));
  EXPECT_EQ(object["verification"][1]["not_reproduced"], Json::array());
  const std::string page = files_.Get("/p.html");
  EXPECT_NE(page.find("<h2 id=\"nachpruefung\">Nicht nachgebildet</h2>"), std::string::npos);
  EXPECT_NE(page.find("<bdi>nur Groß- und Kleinschreibung: Zeile 5: X=ABC</bdi>"),
            std::string::npos);
  EXPECT_EQ(Compare({"--json"}), kExitDone);
  EXPECT_FALSE(ParseJson(console_.out).contains("verification"));
}

TEST_F(VerifyTest, ThePageSaysWhatTheExitCodeSays) {
  const auto has = [&](const char* text) {
    return files_.Get("/p.html").find(text) != std::string::npos;
  };
  EXPECT_EQ(Compare({"--html", "/p.html"}), kExitDone);
  EXPECT_FALSE(has("nachgebildet")) << "nothing was checked";
  EXPECT_EQ(Compare({"--verify", "--html", "/p.html"}), kExitDone);
  EXPECT_TRUE(has("<dt>Stellen nicht nachgebildet</dt><dd>2</dd>"));
  EXPECT_TRUE(has("Ohne Fehler abgeschlossen."));
  EXPECT_EQ(Compare({"--verify", "--strict", "--html", "/p.html"}), kExitFailed);
  EXPECT_TRUE(
      has("<p class=\"outcome error\">Verglichen, aber die neue Version wird nicht ganz "
          "nachgebildet.</p>"));
  EXPECT_EQ(Run({"diff", "/old/b.lst", "/new/b.lst", "/diff", "--verify", "--strict", "--html",
                 "/p.html"}),
            kExitDone);
  EXPECT_TRUE(has("<dt>Stellen nicht nachgebildet</dt><dd>0</dd>"));
  EXPECT_TRUE(has("Ohne Fehler abgeschlossen."));
}

TEST_F(VerifyTest, RestoreUndoesAConversion) {
  files_.Put("/rep/a.lst", files_.Get("/old/a.lst"));
  ASSERT_EQ(Compare({}), kExitDone);
  ASSERT_EQ(Run({"convert-folder", "/diff", "/rep"}), kExitDone);
  const auto converted = files_.files();
  EXPECT_EQ(Run({"restore", "/repBak", "/rep", "--dry-run"}), kExitDone);
  EXPECT_EQ(console_.out,
            "OK      a.lst zurückgeholt; der bisherige Stand liegt als ~a.lst.~ersetzt1 bei den "
            "Sicherungen\nProbelauf, nichts geschrieben: 1 Bericht zurückgeholt\n");
  EXPECT_EQ(files_.files(), converted);
  EXPECT_EQ(Run({"restore", "/repBak", "/rep"}), kExitDone);
  EXPECT_EQ(files_.Get("/rep/a.lst"), files_.Get("/old/a.lst"));
  EXPECT_EQ(Run({"restore", "/repBak", "/rep", "--quiet"}), kExitDone);
  EXPECT_EQ(console_.out, "");
  EXPECT_EQ(Run({"restore", "/repBak", "/rep", "x.lst", "a.lst"}), kExitFailed);
  EXPECT_TRUE(
      Printed("OK      a.lst ist schon auf diesem Stand\nFEHLER  Im Sicherungsverzeichnis "));
}

TEST_F(VerifyTest, RestoreNeedsTwoFolders) {
  files_.Put("/rep/a.lst", SmallReport(3));
  const auto before = files_.files();
  for (const char* backups : {"/rep", "/rep/", "/x/../rep/."}) {
    for (const Words& more : {Words{}, Words{"a.lst", "--dry-run", "--quiet"}}) {
      Words arguments = {"restore", backups, "/rep"};
      arguments.insert(arguments.end(), more.begin(), more.end());
      EXPECT_EQ(Run(arguments), kExitWrongUsage) << backups;
      EXPECT_EQ(console_.out, "");
      EXPECT_EQ(console_.err, "tessary: Sicherungsordner und Berichtsordner können nicht beide " +
                                  MakeAbsolute("/rep") + " sein.\n");
    }
  }
  EXPECT_EQ(files_.files(), before);
  EXPECT_EQ(Run({"restore", "/fehlt", "/fehlt"}), kExitWrongUsage) << "nor one that is not there";
}

TEST_F(VerifyTest, RestoreNamesAReportThatCannotBeWritten) {
  files_.Put("/repBak/a.lst", SmallReport(3));
  files_.Put("/rep/a.lst", SmallReport(4));
  files_.SetReadOnly("/rep/a.lst");
  EXPECT_EQ(Run({"restore", "/repBak", "/rep"}), kExitFailed);
  EXPECT_EQ(console_.out,
            "FEHLER  a.lst konnte nicht zurückgeholt werden: Zugriff verweigert\n"
            "0 Berichte zurückgeholt\n");
}

}  // namespace
}  // namespace tessary
