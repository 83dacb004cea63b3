// The whole command on files in memory and a console that can be anything.

#include "cli/tessary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/path.h"
#include "support/failing_files.h"
#include "support/fake_console.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

class TessaryTest : public testing::Test {
 protected:
  int Run(const Words& arguments) {
    console_.out.clear();
    console_.err.clear();
    return RunTessary(arguments, console_, files_);
  }

  // What has been printed, without the steps that follow the protocol after a failure.
  std::string OutputWithoutSteps() const {
    const auto begin = console_.out.find("\n\n");
    const auto end = console_.out.rfind("\n\n");
    EXPECT_LT(begin, end) << "no steps";
    return console_.out.substr(0, begin + 1) + console_.out.substr(end + 2);
  }

  // A vendor's versions 3 and 4, and a customer's folder with copies of 3.
  void PutReports(const std::vector<std::string>& names) {
    files_.Put("/old/Rechnung.lst", SmallReport(3));
    files_.Put("/new/Rechnung.lst", SmallReport(4));
    files_.PutFolder("/diff");
    for (const std::string& name : names) files_.Put("/rep/" + name, SmallReport(3));
    ASSERT_EQ(Run({"diff", "/old/Rechnung.lst", "/new/Rechnung.lst", "/diff"}), kExitDone);
  }

  // Makes the copy of every report fail: the backup folder is the report folder itself.
  Words ConvertWithFailingBackup() {
    return {"convert-folder", "/diff", "/rep", "--backup", "/rep"};
  }

  MemoryFiles files_;
  FakeConsole console_;
};

constexpr char kConverted[] =
    "OK      Der Bericht a.lst wurde erfolgreich von Version 3 nach 4 konvertiert.\n";

TEST_F(TessaryTest, DiffPrintsWhatBecameOfThePair) {
  PutReports({});
  EXPECT_EQ(console_.out,
            "OK      Die Differenz-Datei 3_4Rechnung für den Bericht Rechnung von Version 3 nach 4 "
            "wurde erfolgreich erstellt.\n1 Differenz-Datei erstellt\n");
  EXPECT_EQ(console_.err, "");
  EXPECT_TRUE(files_.FileExists("/diff/3_4Rechnung"));
}

TEST_F(TessaryTest, DiffFolderCountsWhatItPassesOver) {
  PutReports({});
  files_.Put("/old/Liesmich.txt", "");
  files_.Put("/old/Angebot.lst", SmallReport(3, "Angebot"));
  EXPECT_EQ(Run({"diff-folder", "/old", "/new", "/diff"}), kExitFailed);
  EXPECT_EQ(
      OutputWithoutSteps(),
      "OK      Die Differenz-Datei 3_4Rechnung für den Bericht Rechnung von Version 3 nach 4 "
      "wurde erfolgreich erstellt.\n"
      "FEHLER  Vergleich mit dem Bericht " +
          MakeAbsolute("/new/Angebot.lst") + " fehlgeschlagen.\n        Hinweis Die Datei " +
          MakeAbsolute("/new/Angebot.lst") +
          " existiert nicht.\n"
          "1 Differenz-Datei erstellt, 1 fehlgeschlagen, 1 Datei übergangen (kein Bericht)\n");
}

TEST_F(TessaryTest, ConvertPrintsOneReport) {
  PutReports({"a.lst"});
  EXPECT_EQ(Run({"convert", "/rep/a.lst", "/diff/3_4Rechnung"}), kExitDone);
  EXPECT_EQ(console_.out,
            std::string(kConverted) + "1 Bericht konvertiert, 2 Unterschiede angewendet\n");
  EXPECT_TRUE(files_.FileExists("/repBak/a.lst"));
}

TEST_F(TessaryTest, ConvertNamesAMissingReportByItsPathAndCountsItOnce) {
  PutReports({});
  EXPECT_EQ(Run({"convert", "/rep/x.lst", "/diff/3_4Rechnung"}), kExitFailed);
  EXPECT_EQ(OutputWithoutSteps(),
            "FEHLER  Konvertierung des Berichts " + MakeAbsolute("/rep/x.lst") +
                " fehlgeschlagen.\n        Hinweis Die Datei " + MakeAbsolute("/rep/x.lst") +
                " existiert nicht.\n"
                "0 Berichte konvertiert, 1 fehlgeschlagen\n");
}

TEST_F(TessaryTest, AnEmptyPathIsWrongUsageBeforeAnythingHappens) {
  PutReports({"a.lst"});
  const auto before = files_.files();
  EXPECT_EQ(Run({"convert-folder", "/diff", "", "--html", "/p.html"}), kExitWrongUsage);
  EXPECT_EQ(console_.out, "");
  EXPECT_EQ(console_.err,
            "tessary: Für den Befehl „convert-folder“ ist die Angabe REPORTDIR leer.\n"
            "Hilfe: tessary help convert-folder\n");
  EXPECT_EQ(files_.files(), before);
}

TEST_F(TessaryTest, ConvertFolderNamesEveryReport) {
  PutReports({"a.lst", "b.lst"});
  files_.Put("/rep/neu.lst", SmallReport(4));
  files_.Put("/rep/Liesmich.txt", "");
  files_.Put("/rep/Notizen", "");
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--omit", "B.LST"}), kExitDone);
  EXPECT_EQ(console_.out, std::string(kConverted) +
                              "Ohne passende Differenz-Datei unverändert: neu.lst\n"
                              "1 Bericht konvertiert, 2 Unterschiede angewendet, 1 unverändert, "
                              "1 ausgelassen, "
                              "2 Dateien übergangen (keine Berichte)\n");
  EXPECT_EQ(files_.Get("/rep/b.lst"), SmallReport(3));
}

TEST_F(TessaryTest, ABlankBackupFolderIsTheDefaultOne) {
  PutReports({"a.lst"});
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--backup", " "}), kExitDone);
  EXPECT_EQ(files_.Get("/repBak/a.lst"), SmallReport(3));
}

TEST_F(TessaryTest, AnOmittedNameWithoutFileIsAWarning) {
  PutReports({"a.lst"});
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--omit", "x\xFF"}), kExitDone);
  EXPECT_EQ(console_.err, "Warnung: Zu --omit x\uFFFD gibt es keine Datei im Berichtsordner.\n");
}

TEST_F(TessaryTest, QuietPrintsOnlyFailures) {
  PutReports({"a.lst"});
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--quiet"}), kExitDone);
  EXPECT_EQ(console_.out, "");
  EXPECT_EQ(Run({"convert-folder", "/diff", "/none", "--quiet"}), kExitFailed);
  EXPECT_EQ(console_.out, "FEHLER  Der Ordner " + MakeAbsolute("/none") + " existiert nicht.\n");
}

TEST_F(TessaryTest, QuietShowsNoProgress) {
  console_.BeTerminal();
  PutReports({"a.lst"});
  EXPECT_NE(console_.err.find("\rBerichtsvergleich: "), std::string::npos);
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--quiet"}), kExitDone);
  EXPECT_EQ(console_.err, "");
}

TEST_F(TessaryTest, ProgressIsGoneWhenTheResultIsPrinted) {
  console_.BeTerminal();
  PutReports({});
  EXPECT_TRUE(console_.err.ends_with(" \r")) << console_.err;
  EXPECT_TRUE(console_.out.starts_with("\x1b[32m✔\x1b[0m Die Differenz-Datei ")) << console_.out;
}

TEST_F(TessaryTest, JsonIsTheOnlyOutput) {
  PutReports({"a.lst"});
  EXPECT_EQ(Run({"convert", "/rep/a.lst", "/diff/4_3Rechnung", "--json"}), kExitFailed);
  const Json object = ParseJson(console_.out);
  EXPECT_EQ(object["result"], false);
  EXPECT_EQ(object["errors"].begin().key(), "Konvertierung des Berichts a.lst fehlgeschlagen.");
  EXPECT_EQ(object["entries"][0]["number"], -2147216503);
  EXPECT_FALSE(object.contains("warnings"));
  EXPECT_EQ(Run({"convert", "/rep/a.lst", "/diff/3_4Rechnung", "--json", "--quiet"}), kExitDone);
  EXPECT_EQ(ParseJson(console_.out)["correct"].size(), 1u);
}

TEST_F(TessaryTest, AReportSkippedByAnswerIsNamedAndFailsTheCommand) {
  PutReports({"a.lst"});
  EXPECT_EQ(Run(ConvertWithFailingBackup()), kExitFailed);
  EXPECT_NE(console_.err.find("Warnung: Der Bericht a.lst wurde nicht konvertiert"),
            std::string::npos);
  EXPECT_EQ(console_.out, "0 Berichte konvertiert, 1 übersprungen\n");
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(3));

  Words arguments = ConvertWithFailingBackup();
  arguments.push_back("--json");
  EXPECT_EQ(Run(arguments), kExitFailed);
  const Json object = ParseJson(console_.out);
  EXPECT_EQ(object["result"], true) << "the operation itself did not fail";
  ASSERT_EQ(object["warnings"].size(), 2u);
  EXPECT_TRUE(object["warnings"][0].get<std::string>().ends_with("Antwort: Nein."));
  EXPECT_TRUE(object["warnings"][1].get<std::string>().starts_with("Der Bericht a.lst "));
}

TEST_F(TessaryTest, EveryReportOfASkippedFolderIsNamed) {
  PutReports({"a.lst", "b.lst", "c.lst"});
  files_.Put("/rep/Notizen", "");
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--backup", "/none/below", "--omit", "c.lst",
                 "--json"}),
            kExitFailed);
  const Json object = ParseJson(console_.out);
  EXPECT_EQ(object["result"], false);
  ASSERT_EQ(object["warnings"].size(), 3u);
  EXPECT_TRUE(object["warnings"][1].get<std::string>().starts_with("Der Bericht a.lst "));
  EXPECT_TRUE(object["warnings"][2].get<std::string>().starts_with("Der Bericht b.lst "));
}

TEST_F(TessaryTest, ContinueConvertsWithoutBackup) {
  PutReports({"a.lst"});
  Words arguments = ConvertWithFailingBackup();
  arguments.push_back("--on-backup-failure=continue");
  EXPECT_EQ(Run(arguments), kExitDone);
  EXPECT_NE(console_.err.find("Antwort: Ja."), std::string::npos);
  EXPECT_EQ(console_.out,
            std::string(kConverted) + "1 Bericht konvertiert, 2 Unterschiede angewendet\n");
}

TEST_F(TessaryTest, TheQuestionIsAskedOnATerminal) {
  PutReports({"a.lst", "b.lst"});
  console_.BeTerminal();
  console_.input = {"n", "j"};
  EXPECT_EQ(Run(ConvertWithFailingBackup()), kExitFailed) << "one report was skipped";
  EXPECT_NE(console_.err.find("Der Bericht a.lst konnte nicht gesichert werden.\n"),
            std::string::npos);
  EXPECT_EQ(files_.Get("/rep/a.lst"), SmallReport(3));
  EXPECT_NE(files_.Get("/rep/b.lst"), SmallReport(3));
}

TEST_F(TessaryTest, InfoNamesVersionAndReference) {
  files_.Put("/a.lst", SmallReport(3, "Rechnung"));
  files_.Put("/b.txt", "");
  EXPECT_EQ(Run({"info", "/a.lst"}), kExitDone);
  EXPECT_EQ(console_.out, "/a.lst: Version 3, Referenz Rechnung\n");
  EXPECT_EQ(Run({"info", "/b.txt", "/a.lst", "/c\xFF.lst"}), kExitFailed);
  EXPECT_EQ(console_.out,
            "/b.txt: keine List & Label Berichtsdatei (in [UserSection] fehlen Version und "
            "Referenzbeleg)\n"
            "/a.lst: Version 3, Referenz Rechnung\n"
            "/c\uFFFD.lst: keine List & Label Berichtsdatei (Datei nicht gefunden)\n");
  EXPECT_EQ(Run({"info", "--quiet", "/b.txt", "/a.lst"}), kExitFailed);
  EXPECT_EQ(console_.out,
            "/b.txt: keine List & Label Berichtsdatei (in [UserSection] fehlen Version und "
            "Referenzbeleg)\n");
}

TEST_F(TessaryTest, InfoSaysWhatAFileLacks) {
  files_.Put("/a", SmallReport(3));
  files_.Put("/a.lst~", SmallReport(3));
  files_.Put("/b.lst", FileText({"[UserSection]", "Version=3"}));
  files_.Put("/c.lst", FileText({"[UserSection]", "Version=0", "Referenzbeleg=Rechnung"}));
  const struct {
    const char* file;
    const char* reason;
  } rows[] = {
      {"/a", "der Name hat keine Erweiterung"},
      {"/a.lst~", "die Erweiterung enthält „~“"},
      {"/b.lst", "in [UserSection] fehlt Referenzbeleg"},
      {"/c.lst", "in [UserSection] fehlt eine Version ab 1"},
      {"/missing", "Datei nicht gefunden"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Run({"info", row.file}), kExitFailed);
    EXPECT_EQ(console_.out,
              std::string(row.file) + ": keine List & Label Berichtsdatei (" + row.reason + ")\n");
  }
}

TEST_F(TessaryTest, ShowPrintsATree) {
  files_.Put("/a.lst", FileText({"[UserSection]", "Version=3", "[Object]", "ObjectName=Kopf",
                                 "LinkID=7", "Frame=1", "{", "Style=2", "}"}));
  EXPECT_EQ(Run({"show", "/a.lst"}), kExitDone);
  EXPECT_EQ(console_.out,
            "[UserSection]\n"
            "  Version=3\n"
            "[Object]  (Schlüssel 7, Typ Kopf)\n"
            "  ObjectName=Kopf\n"
            "  LinkID=7\n"
            "  Frame=1\n"
            "    Style=2\n");
}

TEST_F(TessaryTest, ShowSpellsOutStatusAndPlaceOfDifferences) {
  files_.Put("/3_4A", FileText({"U(Key=7:Typ=Kopf:PrevName=[Layer]:PrevKey=1:PrevTyp=:NextName=:"
                                "NextKey=:NextTyp=:PosNr=2);[Object]",
                                "N;Neu=1", "D;Alt=2", "U;[Zweite]"}));
  EXPECT_EQ(Run({"show", "/3_4A"}), kExitDone);
  EXPECT_EQ(console_.out,
            "geändert: [Object]  (Schlüssel 7, Typ Kopf, nach [Layer] 1, Nr. 2)\n"
            "  neu: Neu=1\n"
            "  gelöscht: Alt=2\n"
            "geändert: [Zweite]\n");
}

TEST_F(TessaryTest, ShowKeepsTheTerminalSafe) {
  files_.Put("/a.lst", "[A]\r\nX=\x1b[2J\r\n");
  EXPECT_EQ(Run({"show", "/a.lst"}), kExitDone);
  EXPECT_EQ(console_.out, "[A]\n  X=\uFFFD[2J\n");
}

TEST_F(TessaryTest, ShowOfAnEmptyFilePrintsNothing) {
  files_.Put("/a.lst", "");
  EXPECT_EQ(Run({"show", "/a.lst"}), kExitDone);
  EXPECT_EQ(console_.out, "");
}

TEST_F(TessaryTest, FilesThatCannotBeReadAreNamed) {
  files_.Put("/bom.lst", "\xEF\xBB\xBF[A]\r\n");
  EXPECT_EQ(Run({"show", "/none.lst"}), kExitFailed);
  EXPECT_EQ(console_.err,
            "tessary: Die Datei " + MakeAbsolute("/none.lst") + " existiert nicht.\n");
  EXPECT_EQ(Run({"show", "/bom.lst"}), kExitFailed);
  EXPECT_NE(console_.err.find("tessary: Fehler beim Verarbeiten einer Zeile.\n"),
            std::string::npos);
  EXPECT_EQ(Run({"roundtrip", "/bom.lst", "/out.lst"}), kExitFailed);
  EXPECT_FALSE(files_.FileExists("/out.lst"));
  EXPECT_EQ(console_.out, "");
}

TEST_F(TessaryTest, RoundtripWritesWhatTheLineStoreMakesOfAFile) {
  files_.Put("/a.lst", "[A]\nFoo\nUser=abc");
  EXPECT_EQ(Run({"roundtrip", "/a.lst", "/b.lst"}), kExitDone);
  EXPECT_EQ(files_.Get("/b.lst"), "[A]\r\n Foo=\r\n User1=User;abc\r\n");
  EXPECT_EQ(console_.out, "Geschrieben: /b.lst\n");
  EXPECT_EQ(Run({"roundtrip", "/b.lst", "/b.lst", "--quiet"}), kExitDone);
  EXPECT_EQ(console_.out, "");
}

TEST_F(TessaryTest, RoundtripIntoAMissingFolderFails) {
  files_.Put("/a.lst", "[A]\n");
  EXPECT_EQ(Run({"roundtrip", "/a.lst", "/none/b.lst"}), kExitFailed);
  EXPECT_NE(console_.err.find("tessary: Fehler beim Öffnen der Datei b.lst\n"), std::string::npos);
}

TEST_F(TessaryTest, LinesLeftOutAreAWarning) {
  files_.Put("/a.lst", "[A]\n}\n}\nX=1\n");
  EXPECT_EQ(Run({"show", "/a.lst"}), kExitDone);
  EXPECT_NE(console_.err.find("Warnung: Die Datei " + MakeAbsolute("/a.lst") +
                              " hat 1 Zeile außerhalb der Ebenen 0 bis 9; sie wird nicht "
                              "übernommen.\n"),
            std::string::npos)
      << console_.err;
}

TEST_F(TessaryTest, LostOutputFailsCommandsThatAreAllOutput) {
  files_.Put("/a.lst", SmallReport(3));
  console_.output_outcome = WriteOutcome::kFailed;
  for (const Words& arguments :
       {Words{"info", "/a.lst"}, Words{"show", "/a.lst"}, Words{"--help"}, Words{"--version"}}) {
    EXPECT_EQ(Run(arguments), kExitFailed) << arguments[0];
    EXPECT_EQ(console_.err, "tessary: Die Ausgabe konnte nicht vollständig geschrieben werden.\n");
  }
  console_.output_outcome = WriteOutcome::kClosed;
  EXPECT_EQ(Run({"show", "/a.lst"}), kExitDone) << "the reader had enough";
  EXPECT_EQ(console_.err, "");
}

TEST_F(TessaryTest, LostOutputLeavesTheExitCodeOfAnOperation) {
  PutReports({"a.lst"});
  console_.output_outcome = WriteOutcome::kFailed;
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep"}), kExitDone);
}

TEST_F(TessaryTest, WrongUsageIsExplainedOnStandardError) {
  EXPECT_EQ(Run({"dif"}), kExitWrongUsage);
  EXPECT_EQ(console_.out, "");
  EXPECT_EQ(console_.err,
            "tessary: Unbekannter Befehl „dif“. Meinten Sie „diff“?\nHilfe: tessary --help\n");
  EXPECT_EQ(Run({"show", "a", "\xFF"}), kExitWrongUsage);
  EXPECT_EQ(console_.err,
            "tessary: Für den Befehl „show“ ist die Angabe „\uFFFD“ zu viel.\n"
            "Hilfe: tessary help show\n");
}

}  // namespace
}  // namespace tessary
