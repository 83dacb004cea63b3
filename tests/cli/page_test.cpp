// The page that the operations write on demand, and the steps that their text output ends with.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/tessary.h"
#include "platform/failure.h"
#include "platform/path.h"
#include "platform/shell_word.h"
#include "support/failing_files.h"
#include "support/fake_console.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"
#include "ui/html/protocol_page.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

class PageTest : public testing::Test {
 protected:
  PageTest() {
    memory_.Put("/old/Rechnung.lst", SmallReport(3));
    memory_.Put("/new/Rechnung.lst", SmallReport(4));
    memory_.PutFolder("/diff");
    memory_.PutFolder("/out");
    memory_.Put("/rep/a.lst", SmallReport(3));
    EXPECT_EQ(Run({"diff", "/old/Rechnung.lst", "/new/Rechnung.lst", "/diff"}), kExitDone);
  }

  int Run(const Words& arguments) {
    console_.out.clear();
    console_.err.clear();
    return RunTessary(arguments, console_, files_);
  }

  bool PageHas(const std::string& text) const {
    return memory_.Get("/out/p.html").find(text) != std::string::npos;
  }

  MemoryFiles memory_;
  FailingFiles files_{memory_};
  FakeConsole console_;
};

const Words kConvertFolder = {"convert-folder", "/diff", "/rep", "--html", "/out/p.html"};

std::string Absolute(const std::string& path) { return MakeAbsolute(path); }

TEST_F(PageTest, OneFileForPageAndJournalIsRefusedBeforeAnythingHappens) {
  const auto before = memory_.files();
  for (const char* page : {"/out/x", "/out/./x"}) {
    EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--html", page, "--journal", "/out/x"}),
              kExitWrongUsage);
    EXPECT_EQ(console_.err, "tessary: Protokollseite und Änderungsprotokoll können nicht beide " +
                                Absolute("/out/x") + " sein.\n");
    EXPECT_EQ(memory_.files(), before);
  }
}

TEST_F(PageTest, EveryOperationWritesOne) {
  const struct {
    Words arguments;
    std::string title;
    std::string count;
  } rows[] = {
      {{"diff", "/old/Rechnung.lst", "/new/Rechnung.lst", "/diff"},
       "<h1>Berichtsvergleich</h1>",
       "<dt>Differenz-Datei erstellt</dt><dd>1</dd>"},
      {{"diff-folder", "/old", "/new", "/diff"},
       "<h1>Berichtsvergleich</h1>",
       "<dt>Differenz-Datei erstellt</dt><dd>1</dd>"},
      {{"convert", "/rep/a.lst", "/diff/3_4Rechnung"},
       "<h1>Berichtskonvertierung</h1>",
       "<dt>Bericht konvertiert</dt><dd>1</dd>"},
      {{"convert-folder", "/diff", "/rep"},
       "<h1>Berichtskonvertierung</h1>",
       "<dt>Berichte konvertiert</dt><dd>0</dd>"},
  };
  for (const auto& row : rows) {
    Words arguments = row.arguments;
    arguments.insert(arguments.end(), {"--html", "/out/p.html"});
    EXPECT_EQ(Run(arguments), kExitDone) << arguments[0];
    EXPECT_TRUE(PageHas(row.title)) << arguments[0];
    EXPECT_TRUE(PageHas(row.count)) << arguments[0];
    EXPECT_TRUE(PageHas("Ohne Fehler abgeschlossen.")) << arguments[0];
    EXPECT_FALSE(PageHas("id=\"korrektur\"")) << arguments[0];
    EXPECT_NE(console_.out.find("Protokollseite: /out/p.html\n"), std::string::npos);
  }
}

TEST_F(PageTest, AFailedRunWritesOneWithItsMessagesAndSteps) {
  memory_.SetReadOnly("/rep/a.lst");
  memory_.Put("/rep/Liesmich.txt", "");
  memory_.Put("/rep/neu.lst", SmallReport(4));
  memory_.Put("/rep/aus.lst", SmallReport(3));
  Words arguments = kConvertFolder;
  arguments.insert(arguments.end(), {"--omit", "aus.lst", "--omit=x"});
  EXPECT_EQ(Run(arguments), kExitFailed);
  for (const char* text :
       {"Ein Fehler ist aufgetreten.", "<dt>fehlgeschlagen</dt><dd>1</dd>",
        "<bdi>Konvertierung des Berichts a.lst von Version 3 nach 4 fehlgeschlagen.</bdi>",
        "<bdi>Fehler beim Schreiben in die Datei a.lst</bdi>",
        "Zu --omit x gibt es keine Datei im Berichtsordner.",
        "Auf Wunsch ausgelassen:\n<ul class=\"names\"><li><bdi>aus.lst</bdi></li></ul>",
        "Übergangen, weil keine Berichte:\n<ul class=\"names\"><li><bdi>Liesmich.txt</bdi>",
        "Ohne passende Differenz-Datei unverändert:\n<ul class=\"names\"><li><bdi>neu.lst</bdi>",
        "einige Progerammteile", "Starten Sie die Konvertierung erneut über:"}) {
    EXPECT_TRUE(PageHas(text)) << text;
  }
}

TEST_F(PageTest, ASkippedReportIsNoSuccess) {
  Words arguments = kConvertFolder;
  arguments.insert(arguments.end(), {"--backup", "/rep"});
  EXPECT_EQ(Run(arguments), kExitFailed);
  EXPECT_TRUE(PageHas("Abgeschlossen; wegen einer Antwort wurden Berichte übersprungen."));
  EXPECT_TRUE(PageHas("<dt>übersprungen</dt><dd>1</dd>"));
  EXPECT_TRUE(PageHas("Wegen einer Antwort übersprungen:\n<ul class=\"names\"><li><bdi>a.lst"));
  arguments.back() = "/none/below";
  EXPECT_EQ(Run(arguments), kExitFailed);
  EXPECT_TRUE(PageHas("Nicht ausgeführt, weil eine Frage mit Nein beantwortet wurde."));
  EXPECT_TRUE(PageHas("Kein Bericht wurde bearbeitet."));
}

TEST_F(PageTest, AHostileNameIsText) {
  const std::string name = "<b onclick=\"x\">&\x1b\xFF.lst";
  memory_.Put("/rep/" + name, SmallReport(3));
  memory_.SetReadOnly("/rep/" + name);
  EXPECT_EQ(Run(kConvertFolder), kExitFailed);
  EXPECT_TRUE(PageHas("in die Datei &lt;b onclick=&quot;x&quot;&gt;&amp;\uFFFD\uFFFD.lst</bdi>"));
  EXPECT_FALSE(PageHas("<b onclick"));
}

TEST_F(PageTest, AnEarlierPageIsReplaced) {
  EXPECT_EQ(Run(kConvertFolder), kExitDone);
  EXPECT_TRUE(PageHas("<dd>1</dd>"));
  EXPECT_EQ(Run(kConvertFolder), kExitDone);
  EXPECT_TRUE(PageHas("<dt>Berichte konvertiert</dt><dd>0</dd>"));
  memory_.Put("/out/p.html", "");
  EXPECT_EQ(Run(kConvertFolder), kExitDone);
  EXPECT_TRUE(PageHas("</html>")) << "an empty file holds nothing to lose";
}

TEST_F(PageTest, NothingElseIsEverReplacedAndNothingHappens) {
  memory_.Put("/out/index.html", "<!DOCTYPE html>\n<html lang=\"en\"></html>");
  memory_.Put("/repBak/a.lst", "Sicherung");
  memory_.PutLink("/out/link.html", "/rep/a.lst");
  const auto before = memory_.files();
  for (const std::string target : {"/rep/a.lst", "/rep/../rep/a.lst", "/diff/3_4Rechnung",
                                   "/repBak/a.lst", "/out/index.html", "/out/link.html"}) {
    EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--json", "--html", target}), kExitWrongUsage)
        << target;
    EXPECT_EQ(console_.err, "tessary: Die Datei " + Absolute(target) +
                                " wird nicht überschrieben, weil sie keine Protokollseite ist.\n");
    EXPECT_EQ(console_.out, "");
    EXPECT_EQ(memory_.files(), before) << target;
  }
}

TEST_F(PageTest, AFileThatTheRunItselfMadeIsKept) {
  EXPECT_EQ(
      Run({"diff", "/old/Rechnung.lst", "/new/Rechnung.lst", "/out", "--html", "/out/3_4Rechnung"}),
      kExitFailed);
  EXPECT_EQ(memory_.Get("/out/3_4Rechnung"), memory_.Get("/diff/3_4Rechnung"));
  EXPECT_NE(console_.err.find("weil sie keine Protokollseite ist."), std::string::npos);
  EXPECT_EQ(console_.out.find("Protokollseite: "), std::string::npos);
}

TEST_F(PageTest, WithoutAPlaceForThePageNothingHappens) {
  memory_.Put("/out/old.html", std::string(kHtmlPageBeginning));
  memory_.SetReadOnly("/out/old.html");
  const struct {
    std::string target;
    std::string reason;
  } rows[] = {
      {"/none/p.html", "Pfad nicht gefunden"},
      {"/out", "Fehler beim Zugriff auf Pfad/Datei"},
      {"/out/old.html", "Zugriff verweigert"},
  };
  const auto before = memory_.files();
  for (const auto& row : rows) {
    EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--html", row.target}), kExitWrongUsage);
    EXPECT_EQ(console_.err, "tessary: Die Protokollseite " + Absolute(row.target) +
                                " konnte nicht geschrieben werden: " + row.reason + ".\n");
    EXPECT_EQ(memory_.files(), before) << row.target;
  }
}

TEST_F(PageTest, AFailureToWriteItFailsTheCommand) {
  for (const FileCall call : {FileCall::kWrite, FileCall::kCommit}) {
    // The report comes first, the page last.
    memory_.Put("/rep/a.lst", SmallReport(3));
    files_.Reset();
    EXPECT_EQ(Run(kConvertFolder), kExitDone);
    const int last = files_.CountCalls(call);
    memory_.Put("/rep/a.lst", SmallReport(3));
    files_.Reset();
    files_.FailCall(call, last, kDiskFull);
    EXPECT_EQ(Run(kConvertFolder), kExitFailed);
    EXPECT_NE(console_.err.find("tessary: Die Protokollseite " + Absolute("/out/p.html") +
                                " konnte nicht geschrieben werden: Datenträger voll.\n"),
              std::string::npos)
        << console_.err;
    EXPECT_NE(console_.out.find("1 Bericht konvertiert, 2 Unterschiede angewendet\n"),
              std::string::npos);
  }
}

TEST_F(PageTest, JsonAndPageGoTogether) {
  Words arguments = kConvertFolder;
  arguments.insert(arguments.end(), {"--json", "--quiet"});
  EXPECT_EQ(Run(arguments), kExitDone);
  EXPECT_EQ(ParseJson(console_.out)["result"], true);
  EXPECT_TRUE(PageHas("</html>"));
}

TEST_F(PageTest, AnEmptyNameIsNone) {
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--html="}), kExitWrongUsage);
  EXPECT_EQ(console_.err,
            "tessary: Der Option „--html“ fehlt der Wert FILE.\n"
            "Hilfe: tessary help convert-folder\n");
}

constexpr char kIntroduction[] =
    "Aufgrund der fehlerhaften Konvertierung funktionieren einige Progerammteile möglicherweise "
    "nicht mehr richtig. Bitte versuchen Sie diese Berichte folgendermaßen zu korrigieren:\n";

TEST_F(PageTest, TheTextEndsWithTheStepsOfThisRun) {
  memory_.SetReadOnly("/rep/a.lst");
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep", "--omit", "x y", "--backup", "/out"}),
            kExitFailed);
  EXPECT_NE(
      console_.out.find(
          "\n\n" + std::string(kIntroduction) +
          "1. Starten Sie die Konvertierung erneut über:\n   tessary convert-folder " +
          ShellWord(Absolute("/diff")) + " " + ShellWord(Absolute("/rep")) +
          " --backup=" + ShellWord(Absolute("/out")) + " --omit=" + ShellWord("x y") +
          "\n2. Wählen Sie das Verzeichnis für die Differenz-Berichte aus:\n   " +
          Absolute("/diff") + "\n3. Wählen Sie das Verzeichnis für die Berichte aus:\n   " +
          Absolute("/rep") +
          "\n4. Aktivieren Sie die Berichte, die fehlerhaft sind (s. O.).\n"
          "5. Schlägt die Konvertierung erneut fehl, ersetzten Sie die fehlerhaften Berichte mit "
          "den Ursprungsberichten im Verzeichnis:\n   " +
          Absolute("/out") + "\n\n0 Berichte konvertiert, 1 fehlgeschlagen\n"),
      std::string::npos)
      << console_.out;
}

TEST_F(PageTest, ASingleReportHasItsFolders) {
  memory_.SetReadOnly("/rep/a.lst");
  EXPECT_EQ(Run({"convert", "/rep/a.lst", "/diff/3_4Rechnung"}), kExitFailed);
  for (const std::string& line :
       {"   tessary convert " + ShellWord(Absolute("/rep/a.lst")) + " " +
            ShellWord(Absolute("/diff/3_4Rechnung")),
        "   " + Absolute("/diff"), "   " + Absolute("/rep"), "   " + Absolute("/repBak")}) {
    EXPECT_NE(console_.out.find(line + "\n"), std::string::npos) << line << "\n" << console_.out;
  }
}

TEST_F(PageTest, WithoutBackupsTheLastStepNamesNone) {
  EXPECT_EQ(Run({"convert-folder", "/diff", "/none"}), kExitFailed);
  EXPECT_NE(console_.out.find("mit Ihren eigenen Sicherungen; dieser Lauf hat keine angelegt.\n"),
            std::string::npos);
}

TEST_F(PageTest, AComparisonHasItsOwnSteps) {
  EXPECT_EQ(Run({"diff", "/new/Rechnung.lst", "/old/Rechnung.lst", "/diff"}), kExitFailed);
  EXPECT_EQ(console_.out.find("Konvertierung"), std::string::npos);
  for (const char* text :
       {"1. Beheben Sie, was bei den fehlerhaften Berichten gemeldet ist (s. o.).\n",
        "2. Prüfen Sie die alte Version unter:\n", "3. Prüfen Sie die neue Version unter:\n",
        "5. Starten Sie den Vergleich erneut über:\n   tessary diff "}) {
    EXPECT_NE(console_.out.find(text), std::string::npos) << text;
  }
}

TEST_F(PageTest, ATerminalWrapsTheSteps) {
  console_.BeTerminal();
  console_.width = 40;
  EXPECT_EQ(Run({"convert-folder", "/diff", "/none"}), kExitFailed);
  EXPECT_NE(console_.out.find("\n5. Schlägt die Konvertierung erneut\n   fehl, ersetzten Sie "),
            std::string::npos)
      << console_.out;
}

TEST_F(PageTest, ARunWithoutFailuresHasNoSteps) {
  EXPECT_EQ(Run({"convert-folder", "/diff", "/rep"}), kExitDone);
  EXPECT_EQ(console_.out.find("1. "), std::string::npos);
}

}  // namespace
}  // namespace tessary
