// One pair of reports.

#include <gmock/gmock.h>

#include "platform/path.h"
#include "platform/text.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class CreateDiffFileTest : public ManagerTest {
 protected:
  CreateDiffFileTest() {
    memory_.Put(old_, SmallReport(3));
    memory_.Put(new_, SmallReport(4));
    memory_.PutFolder(diff_);
  }

  bool Create() { return manager_.CreateDiffFile(old_, new_, diff_); }

  // After a failure in a run of its own: these entries, this log text with their messages in
  // reverse, the protocol shown at once and nothing written.
  void ExpectFailure(const std::vector<std::string>& entries, const std::string& log_text,
                     const std::vector<std::string>& messages) {
    EXPECT_THAT(Entries(), ElementsAreArray(entries));
    EXPECT_THAT(ItemsOf(log_.dictErrors), ElementsAre(Pair(log_text, messages)));
    EXPECT_EQ(log_.dictCorrect.Count(), 0);
    EXPECT_THAT(memory_.ListFiles(diff_), IsEmpty());
    ASSERT_GE(user_.events().size(), 4u);
    const std::vector<std::string> end(user_.events().end() - 5, user_.events().end());
    EXPECT_THAT(
        end, ElementsAre("close", "pointer restored", "pointer 0", "protocol", "pointer restored"));
    EXPECT_EQ(user_.Count("stop"), 0u) << "no full bar after a failure";
    ExpectTidy();
  }

  std::string old_ = Path("alt", "Rechnung.lst");
  std::string new_ = Path("neu", "Rechnung-neu.lst");
  std::string diff_ = Folder("diff");
};

TEST_F(CreateDiffFileTest, WritesWhatDiffers) {
  ASSERT_TRUE(Create());
  EXPECT_THAT(user_.events(), ElementsAre("captions Berichtsvergleich|List & Label", "show",
                                          "step Erstellen der Differrenzdatei wird vorbereitet",
                                          "step Berichtsdateien Rechnung.lst werden gelesen",
                                          "step Berichtsdateien Rechnung.lst werden verglichen",
                                          "step Schreibvorgang wird vorbereitet",
                                          "step Differenzdatei 3_4Rechnung wird geschrieben",
                                          "stop", "close", "pointer restored"));
  EXPECT_THAT(ItemsOf(log_.dictCorrect),
              ElementsAre(Pair("Die Differenz-Datei 3_4Rechnung für den Bericht Rechnung von "
                               "Version 3 nach 4 wurde erfolgreich erstellt.",
                               ElementsAre(""))));
  EXPECT_EQ(log_.dictErrors.Count(), 0);
  EXPECT_EQ(manager_.CountCorrectReports(), 1);
  EXPECT_THAT(Entries(), IsEmpty());
  ExpectTidy();

  const std::string contents = memory_.Get(JoinPath(diff_, "3_4Rechnung"));
  EXPECT_THAT(contents, HasSubstr(";Version=4\r\n"));
  EXPECT_THAT(contents, HasSubstr("U(Key=1:Typ=Kopf:PrevName=[UserSection]:"));
  EXPECT_THAT(contents, HasSubstr(";Height=400\r\n"));
  EXPECT_EQ(contents.find("ObjectName"), std::string::npos) << contents;
}

TEST_F(CreateDiffFileTest, TheInputStaysAsItIs) {
  ASSERT_TRUE(Create());
  EXPECT_EQ(memory_.Get(old_), SmallReport(3));
  EXPECT_EQ(memory_.Get(new_), SmallReport(4));
  EXPECT_EQ(memory_.files().size(), 3u);
}

TEST_F(CreateDiffFileTest, ReplacesAnOlderDifferenceFile) {
  memory_.Put(JoinPath(diff_, "3_4Rechnung"), std::string(100'000, 'x'));
  ASSERT_TRUE(Create());
  const std::string first = memory_.Get(JoinPath(diff_, "3_4Rechnung"));
  EXPECT_LT(first.size(), 2000u);
  ASSERT_TRUE(Create());
  EXPECT_EQ(memory_.Get(JoinPath(diff_, "3_4Rechnung")), first);
  EXPECT_EQ(manager_.CountCorrectReports(), 1) << "the same text is one item";
}

TEST_F(CreateDiffFileTest, EveryArgumentIsChecked) {
  const std::string not_there = Path("alt", "fehlt.lst");
  const std::string none = Path("alt", "Notiz.txt");
  memory_.Put(none, "Guten Tag\r\n");
  memory_.Put(Path("alt", "Lieferschein.lst"), SmallReport(3, "Lieferschein"));
  memory_.Put(Path("alt", "drei.lst"), SmallReport(3, "rechnung"));
  const std::string compare_old =
      "Versionsabgleich des 'alten' Berichtes Rechnung.lst mit dem 'neuen' Bericht ";
  const struct {
    const char* what;
    std::string old_path;
    std::string new_path;
    std::string log_text;
    std::int32_t number;
    std::string message;
  } rows[] = {
      {"no old path", "", new_, "Fehlende Pfadangabe für den Bericht der alten Version.", 0, ""},
      {"both missing", "", "", "Fehlende Pfadangabe für den Bericht der alten Version.", 0, ""},
      {"no new path", old_, "", "Fehlende Pfadangabe für den Bericht der neuen Version.", 0, ""},
      {"old file missing", not_there, new_,
       "Vergleich mit dem Bericht " + not_there + " fehlgeschlagen.", kDoesNotExist,
       "Die Datei " + not_there + " existiert nicht."},
      {"new file missing", old_, not_there,
       "Vergleich mit dem Bericht " + not_there + " fehlgeschlagen.", kDoesNotExist,
       "Die Datei " + not_there + " existiert nicht."},
      {"old is a folder", Folder("alt"), new_,
       "Vergleich mit dem Bericht " + Folder("alt") + " fehlgeschlagen.", kDoesNotExist,
       "Die Datei " + Folder("alt") + " existiert nicht."},
      {"old is no report", none, new_, "Vergleich mit dem Bericht Notiz.txt fehlgeschlagen.",
       kWrongKindOfFile, "Die Datei Notiz.txt ist keine List & Label Berichtsdatei."},
      {"new is no report", old_, none, "Vergleich mit dem Bericht Notiz.txt fehlgeschlagen.",
       kWrongKindOfFile, "Die Datei Notiz.txt ist keine List & Label Berichtsdatei."},
      {"other reference", old_, Path("alt", "Lieferschein.lst"),
       compare_old + "Lieferschein.lst fehlgeschlagen.", kWrongKindOfFile,
       "Die Dateien Rechnung.lst und Lieferschein.lst sind Berichte unterschiedlicher Referenz."},
      {"same version", old_, Path("alt", "drei.lst"), compare_old + "drei.lst fehlgeschlagen.",
       kWrongKindOfFile,
       "Die Version 3 des alten Berichts Rechnung.lst ist größer oder gleich der Version 3 des "
       "neuen Berichts drei.lst"},
      {"older version", new_, old_,
       "Versionsabgleich des 'alten' Berichtes Rechnung-neu.lst mit dem 'neuen' Bericht "
       "Rechnung.lst fehlgeschlagen.",
       kWrongKindOfFile,
       "Die Version 4 des alten Berichts Rechnung-neu.lst ist größer oder gleich der Version 3 "
       "des neuen Berichts Rechnung.lst"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    log_ = ResultLog();
    user_.Clear();
    EXPECT_FALSE(manager_.CreateDiffFile(row.old_path, row.new_path, diff_));
    std::vector<std::string> entries;
    if (row.number != 0) entries = {ManagerEntry(row.number, "CreateDiffFile", row.message)};
    ExpectFailure(entries, row.log_text, {row.message});
    EXPECT_THAT(user_.Steps(), ElementsAre("Erstellen der Differrenzdatei wird vorbereitet"));
  }
}

TEST_F(CreateDiffFileTest, ReferencesAreComparedWithoutRegardToCase) {
  memory_.Put(old_, SmallReport(3, "Rechnung für Öl"));
  memory_.Put(new_, SmallReport(4, "RECHNUNG FÜR ÖL"));
  ASSERT_TRUE(Create());
  EXPECT_THAT(memory_.ListFiles(diff_), ElementsAre("3_4RECHNUNG FÜR ÖL"))
      << "named after the new report";
  EXPECT_THAT(TextsOf(log_.dictCorrect),
              ElementsAre("Die Differenz-Datei 3_4RECHNUNG FÜR ÖL für den Bericht Rechnung für Öl "
                          "von Version 3 nach 4 wurde erfolgreich erstellt."));
}

// The header alone differs and lies where no line is taken over.
TEST_F(CreateDiffFileTest, WithoutADifferenceItSucceedsWithoutAFile) {
  const std::string end = "[A]\r\n}\r\n";
  memory_.Put(old_, end + SmallReport(3));
  memory_.Put(new_, end + SmallReport(4));
  EXPECT_TRUE(Create());
  EXPECT_THAT(memory_.ListFiles(diff_), IsEmpty());
  EXPECT_THAT(TextsOf(log_.dictCorrect),
              ElementsAre("Die Differenz-Datei  für den Bericht Rechnung von Version 3 nach 4 "
                          "wurde erfolgreich erstellt."));
  EXPECT_EQ(user_.Steps().back(), "Berichtsdateien Rechnung.lst werden verglichen");
  EXPECT_EQ(user_.Count("stop"), 1u);
  ExpectTidy();
}

TEST_F(CreateDiffFileTest, AReportWithoutLinesSucceedsWithoutAFile) {
  const std::string empty_end = "}\r\n";
  for (const bool old_is_empty : {true, false}) {
    memory_.Put(old_, (old_is_empty ? empty_end : "") + SmallReport(3));
    memory_.Put(new_, (old_is_empty ? "" : empty_end) + SmallReport(4));
    user_.Clear();
    EXPECT_TRUE(Create());
    EXPECT_THAT(memory_.ListFiles(diff_), IsEmpty());
    EXPECT_EQ(user_.Steps().back(), "Berichtsdateien Rechnung.lst werden gelesen");
    EXPECT_EQ(user_.Warnings().size(), 2u);
  }
  EXPECT_EQ(TextsOf(log_.dictCorrect),
            std::vector<std::string>{"Die Differenz-Datei  für den Bericht Rechnung von Version 3 "
                                     "nach 4 wurde erfolgreich erstellt."});
}

TEST_F(CreateDiffFileTest, ATrailingSeparatorOfTheFolderIsDoubledAndAccepted) {
  ASSERT_TRUE(manager_.CreateDiffFile(old_, new_, JoinPath(diff_, "")));
  EXPECT_THAT(memory_.ListFiles(diff_), ElementsAre("3_4Rechnung"));
}

TEST_F(CreateDiffFileTest, AMissingDifferenceFolderIsNotCreated) {
  const std::string missing = Folder("fehlt");
  EXPECT_FALSE(manager_.CreateDiffFile(old_, new_, missing));
  EXPECT_FALSE(memory_.FolderExists(missing));
  const std::string message =
      "Fehler beim Schreiben der Differenz-Datei " + JoinPath(missing, "3_4Rechnung");
  ExpectFailure(
      {ManagerEntry(kPathNotFound, "WriteFile", "Fehler beim Öffnen der Datei 3_4Rechnung"),
       ManagerEntry(kPathNotFound, "CreateDiffFile", message)},
      "Versionsabgleich des Berichtes Rechnung.lst von Version 3 nach 4 fehlgeschlagen.",
      {message, "Fehler beim Öffnen der Datei 3_4Rechnung"});
}

TEST_F(CreateDiffFileTest, AnEmptyDifferenceFolderIsNotTheRoot) {
  EXPECT_FALSE(manager_.CreateDiffFile(old_, new_, ""));
  const std::string message =
      "Fehler beim Schreiben der Differenz-Datei " + JoinPath("", "3_4Rechnung");
  ExpectFailure({ManagerEntry(kBadFileName, "CreateDiffFile", message)},
                "Versionsabgleich des Berichtes Rechnung.lst von Version 3 nach 4 fehlgeschlagen.",
                {message});
  EXPECT_EQ(memory_.files().size(), 2u);
}

// A user interface that fails where no error exit is armed.
class FailingWindow : public RecordingUser {
 public:
  std::unique_ptr<ProgressWindow> CreateProgressWindow() override {
    if (fails) throw Failure(kOutOfMemory);
    return RecordingUser::CreateProgressWindow();
  }
  bool fails = true;
};

TEST_F(CreateDiffFileTest, AFailingWindowEndsInFalseAndLeavesNoBatchBehind) {
  FailingWindow window;
  BXConvertLLMgr manager(log_, {memory_, window, nullptr, &window});
  EXPECT_FALSE(manager.CreateDiffFiles(ParentFolderOf(old_), ParentFolderOf(new_), diff_));
  EXPECT_FALSE(manager.CreateDiffFile(old_, new_, diff_));
  window.fails = false;
  EXPECT_TRUE(manager.CreateDiffFile(old_, new_, diff_));
  EXPECT_EQ(window.Count("close"), 1u) << "a single operation has a window of its own";
}

TEST_F(CreateDiffFileTest, AReferenceThatLeadsOutOfTheFolderIsRefused) {
  for (const char* reference : {"../Rechnung", "a/b", "a\\b", "C:Rechnung", "..", "a..b", "a\tb"}) {
    SCOPED_TRACE(reference);
    log_ = ResultLog();
    user_.Clear();
    memory_.Put(old_, SmallReport(3, reference));
    memory_.Put(new_, SmallReport(4, reference));
    EXPECT_FALSE(Create());
    const std::string message = "Fehler beim Schreiben der Differenz-Datei " +
                                JoinPath(diff_, std::string("3_4") + reference);
    ExpectFailure({ManagerEntry(kBadFileName, "CreateDiffFile", message)},
                  "Versionsabgleich des Berichtes Rechnung.lst von Version 3 nach 4 "
                  "fehlgeschlagen.",
                  {message});
    EXPECT_EQ(memory_.files().size(), 2u);
  }
}

TEST_F(CreateDiffFileTest, ASingleDotInTheReferenceIsNoHarm) {
  memory_.Put(old_, SmallReport(3, "Rechnung.lst"));
  memory_.Put(new_, SmallReport(4, "Rechnung.lst"));
  ASSERT_TRUE(Create());
  EXPECT_THAT(memory_.ListFiles(diff_), ElementsAre("3_4Rechnung.lst"));
}

// Each step with the call that fails in it.
TEST_F(CreateDiffFileTest, EveryStepHasItsExit) {
  const std::string written = JoinPath(diff_, "3_4Rechnung");
  const struct {
    const char* what;
    FileCall call;
    int n;
    std::int32_t number;
    std::string inner;
    std::string message;
  } rows[] = {
      {"the new report is read first", FileCall::kOpenForReading, 1, kPermissionDenied,
       "ReadFile|Fehler beim Öffnen der Datei Rechnung-neu.lst",
       "Fehler beim Lesen der Datei Rechnung-neu.lst"},
      {"new report breaks off", FileCall::kRead, 1, kDeviceError,
       "ReadFile|Fehler beim Lesen aus der Datei Rechnung-neu.lst",
       "Fehler beim Lesen der Datei Rechnung-neu.lst"},
      {"old report", FileCall::kOpenForReading, 2, kFileNotFound,
       "ReadFile|Fehler beim Öffnen der Datei Rechnung.lst",
       "Fehler beim Lesen der Datei Rechnung.lst"},
      {"opening", FileCall::kOpenForReplacing, 1, kPermissionDenied,
       "WriteFile|Fehler beim Öffnen der Datei 3_4Rechnung",
       "Fehler beim Schreiben der Differenz-Datei " + written},
      {"writing", FileCall::kWrite, 1, kDiskFull,
       "WriteFile|Fehler beim Schreiben in Datei 3_4Rechnung",
       "Fehler beim Schreiben der Differenz-Datei " + written},
      {"committing", FileCall::kCommit, 1, kDiskFull,
       "WriteFile|Fehler beim Schreiben in Datei 3_4Rechnung",
       "Fehler beim Schreiben der Differenz-Datei " + written},
      {"naming the difference file", FileCall::kProfileString, 5, kOutOfMemory, "",
       "Fehler beim Schreiben der Differenz-Datei "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    log_ = ResultLog();
    user_.Clear();
    files_.Reset();
    files_.FailCall(row.call, row.n, row.number);
    EXPECT_FALSE(Create());
    std::vector<std::string> entries;
    std::vector<std::string> messages = {row.message};
    if (!row.inner.empty()) {
      const auto bar = row.inner.find('|');
      entries.push_back(
          ManagerEntry(row.number, row.inner.substr(0, bar), row.inner.substr(bar + 1)));
      messages.push_back(row.inner.substr(bar + 1));
    }
    entries.push_back(ManagerEntry(row.number, "CreateDiffFile", row.message));
    ExpectFailure(entries,
                  "Versionsabgleich des Berichtes Rechnung.lst von Version 3 nach 4 "
                  "fehlgeschlagen.",
                  messages);
  }
}

TEST_F(CreateDiffFileTest, AFailingComparisonNamesBothReports) {
  user_.AfterEvent([&](const std::string& event) {
    if (event.ends_with("verglichen")) loop_.FailAt(1, kOverflow);
  });
  EXPECT_FALSE(Create());
  ASSERT_GE(Entries().size(), 2u);
  EXPECT_THAT(Entries().front(), HasSubstr(RunTimeErrorText(kOverflow)));
  EXPECT_EQ(Entries().back(),
            ManagerEntry(kOverflow, "CreateDiffFile",
                         "Fehler beim Vergleich der Dateien Rechnung.lst und Rechnung-neu.lst"));
  EXPECT_EQ(log_.dictErrors.items().at(0).messages.size(), Entries().size());
  ExpectTidy();
}

TEST_F(CreateDiffFileTest, ALineThatCannotBeReadFailsTheReport) {
  memory_.Put(old_, "{\r\n{\r\nX=1\r\n}\r\n}\r\n" + SmallReport(3));
  EXPECT_FALSE(Create());
  EXPECT_THAT(Entries(), ElementsAre(EntryText(kObjectNotSet, "BXReportFile Prozedur: AddLine"),
                                     ManagerEntry(kObjectNotSet, "ReadFile",
                                                  "Fehler beim Verarbeiten einer Zeile."),
                                     ManagerEntry(kObjectNotSet, "CreateDiffFile",
                                                  "Fehler beim Lesen der Datei Rechnung.lst")));
}

TEST_F(CreateDiffFileTest, AReportWithAByteOrderMarkCountsAsReportAndFails) {
  memory_.Put(new_, "\xEF\xBB\xBF" + SmallReport(4));
  EXPECT_FALSE(Create());
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kInvalidCall, "ReadFile",
                                                  "Fehler beim Verarbeiten einer Zeile."),
                                     ManagerEntry(kInvalidCall, "CreateDiffFile",
                                                  "Fehler beim Lesen der Datei Rechnung-neu.lst")));
}

TEST_F(CreateDiffFileTest, EachOperationStartsWithACleanCollection) {
  EXPECT_FALSE(manager_.CreateDiffFile(Folder("fehlt"), new_, diff_));
  EXPECT_EQ(Entries().size(), 1u);
  EXPECT_TRUE(Create()) << "earlier failures do not count for a single pair";
  EXPECT_THAT(Entries(), IsEmpty());
  EXPECT_EQ(log_.dictErrors.Count(), 1);
}

TEST_F(CreateDiffFileTest, TellsOfLinesThatAreNotTakenOver) {
  const struct {
    const char* what;
    const char* end;
    std::vector<std::string> warnings;
  } rows[] = {
      {"balanced", " X=1\r\n {\r\n }\r\n", {}},
      {"one line dropped",
       "}\r\n}\r\n[B]\r\n{\r\n",
       {"Die Datei " + new_ +
        " hat 1 Zeile außerhalb der Ebenen 0 bis 9; sie wird nicht übernommen."}},
      {"a block left open",
       "  {\r\n",
       {"Die Datei " + new_ +
        " (8 Zeilen) endet auf Ebene 2; ihre Blöcke sind nicht "
        "ausgeglichen."}},
      {"both",
       "}\r\n}\r\n[B]\r\n[C]\r\n",
       {"Die Datei " + new_ +
            " hat 2 Zeilen außerhalb der Ebenen 0 bis 9; sie werden nicht übernommen.",
        "Die Datei " + new_ +
            " (11 Zeilen) endet auf Ebene -1; ihre Blöcke sind nicht "
            "ausgeglichen."}},
  };
  for (const auto& row : rows) {
    user_.Clear();
    memory_.Put(new_, SmallReport(4) + row.end);
    EXPECT_TRUE(Create()) << row.what;
    EXPECT_EQ(user_.Warnings(), row.warnings) << row.what;
  }
}

TEST_F(CreateDiffFileTest, NoticesAndTheMessageLoopMayBeMissing) {
  memory_.Put(new_, SmallReport(4) + "}\r\n}\r\n[B]\r\n");
  BXConvertLLMgr manager(log_, {files_, user_});
  EXPECT_TRUE(manager.CreateDiffFile(old_, new_, diff_));
}

}  // namespace
}  // namespace tessary
