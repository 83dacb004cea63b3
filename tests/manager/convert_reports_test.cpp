// A folder of reports.

#include <gmock/gmock.h>

#include "platform/path.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class ConvertReportsTest : public ManagerTest {
 protected:
  ConvertReportsTest() {
    for (const char* folder : {"diff", "Berichte"}) memory_.PutFolder(Folder(folder));
  }

  // Writes the difference file between two versions of SmallReport, and gives its path.
  std::string PutDifference(int old_version, int new_version,
                            const std::string& reference = "Rechnung") {
    ResultLog log;
    RecordingUser user;
    memory_.Put(Path("alt", "r.lst"), SmallReport(old_version, reference));
    memory_.Put(Path("neu", "r.lst"), SmallReport(new_version, reference));
    EXPECT_TRUE(BXConvertLLMgr(log, {memory_, user})
                    .CreateDiffFile(Path("alt", "r.lst"), Path("neu", "r.lst"), Folder("diff")));
    return Path("diff",
                std::to_string(old_version) + "_" + std::to_string(new_version) + reference);
  }
  void PutReport(const std::string& name, int version, const std::string& reference = "Rechnung") {
    memory_.Put(Path("Berichte", name), SmallReport(version, reference));
  }

  bool Convert(const OmitReport& omit = nullptr) {
    return manager_.ConvertReports(Folder("diff"), Folder("Berichte"), "", omit);
  }

  const std::string& Report(const std::string& name) { return memory_.Get(Path("Berichte", name)); }
  const std::string& Backup(const std::string& name) {
    return memory_.Get(Path("BerichteBak", name));
  }
  static std::string Success(const std::string& name, int old_version, int new_version) {
    return "Der Bericht " + name + " wurde erfolgreich von Version " + std::to_string(old_version) +
           " nach " + std::to_string(new_version) + " konvertiert.";
  }

  const std::string whole_run_ =
      "Konvertierung ist für alle Berichte in " + Folder("Berichte") + " fehlgeschlagen.";
};

TEST_F(ConvertReportsTest, AppliesTheChainOfDifferenceFiles) {
  PutDifference(5, 6);
  PutDifference(3, 4);
  PutDifference(4, 5);
  PutDifference(3, 4, "Angebot");
  PutReport("R.lst", 3);
  PutReport("Spät.lst", 5);
  PutReport("A.lst", 3, "ANGEBOT");
  PutReport("Fremd.lst", 3, "Fremd");
  ASSERT_TRUE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(6));
  EXPECT_EQ(Report("Spät.lst"), SmallReport(6));
  EXPECT_EQ(Report("Fremd.lst"), SmallReport(3, "Fremd"));
  EXPECT_THAT(Report("A.lst"), HasSubstr("Version=4"));
  EXPECT_EQ(Backup("R.lst"), SmallReport(3));
  EXPECT_EQ(Backup("Spät.lst"), SmallReport(5));
  EXPECT_EQ(Backup("Fremd.lst"), SmallReport(3, "Fremd"))
      << "reports without a chain are saved too";
  EXPECT_THAT(TextsOf(log_.dictCorrect),
              ElementsAre(Success("A.lst", 3, 4), Success("R.lst", 3, 4), Success("R.lst", 4, 5),
                          Success("R.lst", 5, 6), Success("Spät.lst", 5, 6)));
  EXPECT_THAT(Entries(), IsEmpty());
  EXPECT_THAT(user_.Warnings(), IsEmpty());
}

TEST_F(ConvertReportsTest, OneWindowForTheWholeRunAndNoQuestions) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  PutReport("B.lst", 4);
  memory_.Put(Path("Berichte", "Notiz.txt"), "x");
  ASSERT_TRUE(Convert());
  EXPECT_THAT(user_.events(),
              ElementsAre("captions Berichtskonvertierung|List & Label", "show",
                          "step Berichtskonvertierung wird vorbereitet", "pointer 11",
                          "passed over " + Path("Berichte", "Notiz.txt"), "pointer 11",
                          "step Differenzdatei wird gelesen", "step Berichtsdatei wird gelesen",
                          "step Bericht A.lst wird von Version 3 nach 4 konvertiert",
                          "step Bericht A.lst wird von Version 3 nach 4 aktualisiert", "pointer 11",
                          "stop", "close", "pointer restored"));
  ExpectTidy();
}

TEST_F(ConvertReportsTest, AGapEndsTheChain) {
  PutDifference(3, 4);
  PutDifference(5, 6);
  PutReport("R.lst", 3);
  PutReport("Alt.lst", 2);
  ASSERT_TRUE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(4));
  EXPECT_EQ(Report("Alt.lst"), SmallReport(2));
}

TEST_F(ConvertReportsTest, VersionsAreOrderedAsNumbers) {
  PutDifference(9, 10);
  PutDifference(10, 11);
  PutReport("R.lst", 9);
  ASSERT_TRUE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(11));
}

TEST_F(ConvertReportsTest, OfTwoDifferenceFilesFromOneVersionTheFirstWins) {
  PutDifference(3, 4);
  PutDifference(3, 5);
  PutDifference(4, 5);
  PutReport("R.lst", 3);
  ASSERT_TRUE(Convert());
  EXPECT_THAT(TextsOf(log_.dictCorrect),
              ElementsAre(Success("R.lst", 3, 4), Success("R.lst", 4, 5)));

  memory_.Remove(Path("diff", "3_4Rechnung"));
  PutReport("R.lst", 3);
  log_ = ResultLog();
  ASSERT_TRUE(Convert());
  EXPECT_THAT(TextsOf(log_.dictCorrect), ElementsAre(Success("R.lst", 3, 5)))
      << "the step from 4 to 5 does not fit any more";
}

TEST_F(ConvertReportsTest, AFailedStepEndsTheChain) {
  memory_.Put(PutDifference(3, 4), "{\r\n{\r\nX=1\r\n");
  PutDifference(4, 5);
  PutReport("R.lst", 3);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(3));
  EXPECT_EQ(log_.dictCorrect.Count(), 0);
  EXPECT_EQ(log_.dictErrors.Count(), 1);
}

TEST_F(ConvertReportsTest, AFailingReportDoesNotStopTheOthers) {
  PutDifference(3, 4);
  for (const char* name : {"A.lst", "B.lst", "C.lst"}) PutReport(name, 3);
  memory_.SetReadOnly(Path("Berichte", "B.lst"));
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("A.lst"), SmallReport(4));
  EXPECT_EQ(Report("B.lst"), SmallReport(3));
  EXPECT_EQ(Report("C.lst"), SmallReport(4));
  EXPECT_THAT(ItemsOf(log_.dictErrors),
              ElementsAre(Pair("Konvertierung des Berichts B.lst von Version 3 nach 4 "
                               "fehlgeschlagen.",
                               ElementsAre("Fehler beim Schreiben in die Datei B.lst",
                                           "Fehler beim Öffnen der Datei B.lst"))));
  EXPECT_EQ(user_.Count("protocol"), 1u);
  const std::vector<std::string> end(user_.events().end() - 6, user_.events().end());
  EXPECT_THAT(end, ElementsAre("stop", "close", "pointer restored", "pointer 0", "protocol",
                               "pointer restored"));
  ASSERT_EQ(user_.protocols().size(), 1u);
  EXPECT_EQ(user_.protocols()[0].correct.size(), 2u);
}

TEST_F(ConvertReportsTest, TheCollectionHoldsTheEntriesOfAllReports) {
  PutDifference(3, 4);
  for (const char* name : {"A.lst", "B.lst", "C.lst"}) PutReport(name, 3);
  memory_.SetReadOnly(Path("Berichte", "A.lst"));
  memory_.SetReadOnly(Path("Berichte", "B.lst"));
  EXPECT_FALSE(Convert());
  EXPECT_THAT(
      Entries(),
      ElementsAre(
          ManagerEntry(kPermissionDenied, "WriteFile", "Fehler beim Öffnen der Datei A.lst"),
          ManagerEntry(kPermissionDenied, "ConvertReport",
                       "Fehler beim Schreiben in die Datei A.lst"),
          ManagerEntry(kPermissionDenied, "WriteFile", "Fehler beim Öffnen der Datei B.lst"),
          ManagerEntry(kPermissionDenied, "ConvertReport",
                       "Fehler beim Schreiben in die Datei B.lst")));
}

TEST_F(ConvertReportsTest, FoldersThatCannotBeUsedEndTheRun) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  const std::string missing = Folder("fehlt");
  const struct {
    const char* what;
    std::string diff_folder;
    std::string report_folder;
    std::string log_text;
    bool backup_folder_made;
  } rows[] = {
      {"report folder empty text", Folder("diff"), "",
       "Fehlende Pfadangabe für das Berichtsverzeichnis.", false},
      {"report folder before the difference folder", "", "",
       "Fehlende Pfadangabe für das Berichtsverzeichnis.", false},
      {"report folder missing", "", missing, "Der Ordner " + missing + " existiert nicht.", false},
      {"difference folder empty text", "", Folder("Berichte"),
       "Fehlende Pfadangabe für das Differenz-Berichtsverzeichnis.", true},
      {"difference folder missing", missing, Folder("Berichte"),
       "Der Ordner " + missing + " existiert nicht.", true},
      {"difference folder is a file", Path("diff", "3_4Rechnung"), Folder("Berichte"),
       "Der Ordner " + Path("diff", "3_4Rechnung") + " existiert nicht.", true},
  };
  bool made = false;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    log_ = ResultLog();
    user_.Clear();
    EXPECT_FALSE(manager_.ConvertReports(row.diff_folder, row.report_folder, ""));
    EXPECT_THAT(ItemsOf(log_.dictErrors), ElementsAre(Pair(row.log_text, ElementsAre(""))));
    EXPECT_THAT(Entries(), IsEmpty());
    EXPECT_EQ(user_.Count("protocol"), 0u);
    EXPECT_EQ(user_.Count("stop"), 0u);
    made = made || row.backup_folder_made;
    EXPECT_EQ(memory_.FolderExists(Folder("BerichteBak")), made);
    ExpectTidy();
  }
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
}

TEST_F(ConvertReportsTest, EmptyListsNameTheFoldersBaseName) {
  memory_.PutFolder(Folder("Diff.v3"));
  memory_.Put(Path("Diff.v3", "4_3Rechnung"), "x");
  memory_.Put(Path("Berichte", "Notiz.txt"), "x");
  const auto expect_empty = [&](const std::string& diff_folder, const std::string& report_folder,
                                const std::string& base, const std::string& exit_message) {
    log_ = ResultLog();
    user_.Clear();
    EXPECT_FALSE(manager_.ConvertReports(diff_folder, report_folder, ""));
    const std::string message = "Der Ordner " + base + " ist leer.";
    EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kFolderEmpty, "ConvertReports", message),
                                       ManagerEntry(kFolderEmpty, "ConvertReports", exit_message)));
    EXPECT_THAT(ItemsOf(log_.dictErrors),
                ElementsAre(Pair(
                    "Konvertierung ist für alle Berichte in " + report_folder + " fehlgeschlagen.",
                    ElementsAre(exit_message, message))));
    EXPECT_EQ(user_.Count("protocol"), 0u) << "an error exit of a batch shows no protocol";
    ExpectTidy();
  };
  expect_empty(
      Folder("Diff.v3"), Folder("Berichte"), "Diff",
      "Fehler beim Aufbereiten der Dateien im Diff-Berichts-Verzeichnis " + Folder("Diff.v3"));
  const std::string with_separator = JoinPath(Folder("diff"), "");
  expect_empty(
      with_separator, Folder("Berichte"), "diff",
      "Fehler beim Aufbereiten der Dateien im Diff-Berichts-Verzeichnis " + with_separator);
  PutDifference(3, 4);
  expect_empty(Folder("diff"), Folder("Berichte"), "Berichte",
               "Fehler beim Aufbereiten der Dateien im Berichts-Verzeichnis " + Folder("Berichte"));
}

TEST_F(ConvertReportsTest, AFolderThatCannotBeListedHasTwoEntries) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  const std::string exit_messages[] = {
      "Fehler beim Aufbereiten der Dateien im Diff-Berichts-Verzeichnis " + Folder("diff"),
      "Fehler beim Aufbereiten der Dateien im Berichts-Verzeichnis " + Folder("Berichte")};
  for (int call = 1; call <= 2; ++call) {
    files_.Reset();
    files_.FailCall(FileCall::kList, call, kPermissionDenied);
    EXPECT_FALSE(Convert());
    EXPECT_THAT(
        Entries(),
        ElementsAre(ManagerEntry(kPermissionDenied, "CreateFileArraysForConversion",
                                 RunTimeErrorText(kPermissionDenied)),
                    ManagerEntry(kPermissionDenied, "ConvertReports", exit_messages[call - 1])));
    EXPECT_THAT(TextsOf(log_.dictErrors), ElementsAre(whole_run_)) << "the first text wins";
  }
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
}

// The folder is there when it is checked and has gone when it is listed.
TEST_F(ConvertReportsTest, AFolderThatVanishesHasTheNumberOfAnEmptyOne) {
  class VanishingFolder : public MemoryFiles {
   public:
    bool FolderExists(const std::string& path) override {
      const bool again = path.ends_with("diff") && asked_++ > 0;
      return !again && MemoryFiles::FolderExists(path);
    }

   private:
    int asked_ = 0;
  } files;
  files.Put(Path("Berichte", "A.lst"), SmallReport(3));
  files.PutFolder(Folder("diff"));
  BXConvertLLMgr manager(log_, {files, user_});
  EXPECT_FALSE(manager.ConvertReports(Folder("diff"), Folder("Berichte"), ""));
  EXPECT_THAT(
      Entries(),
      ElementsAre(ManagerEntry(kFolderEmpty, "CreateFileArraysForConversion",
                               "Das Verzeichnis " + Folder("diff") + " existiert nicht."),
                  ManagerEntry(kFolderEmpty, "ConvertReports",
                               "Fehler beim Aufbereiten der Dateien im Diff-Berichts-Verzeichnis " +
                                   Folder("diff"))));
}

TEST_F(ConvertReportsTest, ReportsToOmitAreLeftOut) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  PutReport("B.lst", 3);
  std::vector<std::string> asked;
  ASSERT_TRUE(Convert([&](const std::string& name) {
    asked.push_back(name);
    return name == "A.lst";
  }));
  EXPECT_THAT(asked, ElementsAre("A.lst", "B.lst"));
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
  EXPECT_EQ(Report("B.lst"), SmallReport(4));
  EXPECT_THAT(memory_.ListFiles(Folder("BerichteBak")), ElementsAre("B.lst"));
}

TEST_F(ConvertReportsTest, OmittingAllReportsIsAnEmptyFolder) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  EXPECT_FALSE(Convert([](const std::string&) { return true; }));
  EXPECT_THAT(Entries().front(), HasSubstr("Der Ordner Berichte ist leer."));
}

TEST_F(ConvertReportsTest, NoToTheQuestionAboutTheFolderEndsTheRun) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  files_.FailCall(FileCall::kCreateFolder, 1, kPermissionDenied);
  user_.AnswerNext(Answer::kNo);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
  EXPECT_THAT(user_.Texts("skipped"), ElementsAre(Folder("Berichte")));
  EXPECT_EQ(log_.dictErrors.Count(), 0);
  EXPECT_EQ(user_.Count("protocol"), 0u);
  ExpectTidy();
}

TEST_F(ConvertReportsTest, YesToTheQuestionAboutTheFolderConvertsWithoutBackups) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  PutReport("B.lst", 3);
  files_.FailCall(FileCall::kCreateFolder, 1, kPermissionDenied);
  user_.AnswerNext(Answer::kYes);
  EXPECT_TRUE(Convert());
  ASSERT_EQ(user_.Questions().size(), 1u) << "asked once for the whole run";
  EXPECT_THAT(user_.Questions()[0],
              HasSubstr("Das BackUp-Verzeichnis " + Folder("BerichteBak") + " konnte nicht"));
  EXPECT_EQ(Report("B.lst"), SmallReport(4));
  EXPECT_EQ(files_.CountCalls(FileCall::kCopy), 0);
  EXPECT_FALSE(memory_.FolderExists(Folder("BerichteBak")));
}

TEST_F(ConvertReportsTest, NoToTheQuestionAboutAReportSkipsThatOne) {
  PutDifference(3, 4);
  for (const char* name : {"A.lst", "B.lst", "C.lst"}) PutReport(name, 3);
  files_.FailCall(FileCall::kCopy, 1, kDiskFull);
  files_.FailCall(FileCall::kCopy, 2, kDiskFull);
  user_.AnswerNext(Answer::kNo);
  user_.AnswerNext(Answer::kYes);
  EXPECT_TRUE(Convert()) << "a report left out by the user is no failure";
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
  EXPECT_EQ(Report("B.lst"), SmallReport(4));
  EXPECT_EQ(Report("C.lst"), SmallReport(4));
  EXPECT_THAT(user_.Texts("skipped"), ElementsAre(Path("Berichte", "A.lst")));
  ASSERT_EQ(user_.Questions().size(), 2u);
  EXPECT_TRUE(user_.Questions()[1].starts_with("Der Bericht B.lst konnte nicht gesichert werden."));
}

TEST_F(ConvertReportsTest, TheReportFolderAsBackupFolderIsAskedAboutForEachReport) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  PutReport("B.lst", 3);
  user_.AnswerAlways(Answer::kNo);
  EXPECT_TRUE(manager_.ConvertReports(Folder("diff"), Folder("Berichte"), Folder("Berichte")));
  EXPECT_EQ(user_.Questions().size(), 2u);
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
  EXPECT_EQ(memory_.ListFiles(Folder("Berichte")).size(), 2u);
}

TEST_F(ConvertReportsTest, OneBackupIsMadeBeforeTheWholeChain) {
  PutDifference(3, 4);
  PutDifference(4, 5);
  PutReport("R.lst", 3);
  ASSERT_TRUE(Convert());
  EXPECT_EQ(files_.CountCalls(FileCall::kCopy), 1);
  EXPECT_EQ(Backup("R.lst"), SmallReport(3));
}

TEST_F(ConvertReportsTest, ADamagedReportIsRestoredAndTheOthersGoOn) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  PutReport("B.lst", 3);
  files_.FailCall(FileCall::kCommit, 1, kDiskFull, Damage::kHalfWritten);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("A.lst"), SmallReport(3));
  EXPECT_EQ(Report("B.lst"), SmallReport(4));
}

// The one copy of a run is that of the first version.
TEST_F(ConvertReportsTest, DamageInTheSecondStepRestoresTheOriginal) {
  PutDifference(3, 4);
  PutDifference(4, 5);
  PutReport("R.lst", 3);
  files_.FailCall(FileCall::kCommit, 2, kDiskFull, Damage::kHalfWritten);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(3));
}

TEST_F(ConvertReportsTest, AnOlderDifferentCopyIsKeptAndTold) {
  PutDifference(3, 4);
  PutReport("R.lst", 3);
  memory_.Put(Path("BerichteBak", "R.lst"), "original of an earlier run");
  ASSERT_TRUE(Convert());
  EXPECT_EQ(memory_.Get(Path("BerichteBak", "~R.lst.~1")), "original of an earlier run");
  EXPECT_EQ(Backup("R.lst"), SmallReport(3));
  EXPECT_EQ(user_.Warnings().size(), 1u);
}

TEST_F(ConvertReportsTest, ASecondRunChangesNoReport) {
  PutDifference(3, 4);
  PutReport("R.lst", 3);
  ASSERT_TRUE(Convert());
  ASSERT_TRUE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(4));
  EXPECT_EQ(memory_.Get(Path("BerichteBak", "~R.lst.~1")), SmallReport(3));
  EXPECT_EQ(manager_.CountCorrectReports(), 1) << "there was nothing to do";
}

TEST_F(ConvertReportsTest, AnEarlierFailureMakesTheRunFalse) {
  PutDifference(3, 4);
  PutReport("R.lst", 3);
  EXPECT_FALSE(manager_.ConvertReport("", "", ""));
  user_.Clear();
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("R.lst"), SmallReport(4));
  EXPECT_EQ(user_.Count("protocol"), 1u);
}

TEST_F(ConvertReportsTest, LeftoversOfADeadRunAreRemovedFromTheReportFolder) {
  PutDifference(3, 4);
  PutReport("R.lst", 3);
  memory_.Put(Path("Berichte", "~tessary-0123456789abcdef.~tmp"), "half a report");
  ASSERT_TRUE(Convert());
  EXPECT_THAT(memory_.ListFiles(Folder("Berichte")), ElementsAre("R.lst"));
}

TEST_F(ConvertReportsTest, AReportThatVanishesFailsAlone) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  PutReport("B.lst", 3);
  user_.AfterEvent([&](const std::string& event) {
    if (event.ends_with("aktualisiert")) memory_.Remove(Path("Berichte", "B.lst"));
  });
  user_.AnswerNext(Answer::kYes);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(Report("A.lst"), SmallReport(4));
  EXPECT_THAT(
      TextsOf(log_.dictErrors),
      ElementsAre("Konvertierung des Berichts " + Path("Berichte", "B.lst") + " fehlgeschlagen."));
}

TEST_F(ConvertReportsTest, AFailureBetweenReportsNamesTheReport) {
  PutDifference(3, 4);
  PutReport("A.lst", 3);
  files_.BeforeCall([](const FailingFiles::Call& call) {
    if (call.kind == FileCall::kCopy) throw std::bad_alloc();
  });
  EXPECT_FALSE(Convert());
  const std::string message = "Fehler beim Konvertieren des Berichtes A.lst";
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kOutOfMemory, "ConvertReports", message)));
  EXPECT_THAT(ItemsOf(log_.dictErrors), ElementsAre(Pair(whole_run_, ElementsAre(message))));
  EXPECT_EQ(user_.Count("protocol"), 0u);
  ExpectTidy();
}

// After every way out a single operation shows its own window and the protocol again.
TEST_F(ConvertReportsTest, TheBatchEndsOnEveryWayOut) {
  const std::function<void()> ways[] = {
      [&] { manager_.ConvertReports("", "", ""); },
      [&] { Convert(); },
      [&] {
        PutDifference(3, 4);
        Convert();
      },
      [&] {
        PutReport("A.lst", 3);
        Convert();
      },
      [&] {
        user_.AnswerNext(Answer::kNo);
        manager_.ConvertReports(Folder("diff"), Folder("Berichte"), Path("fehlt", "x"));
      },
  };
  for (const auto& way : ways) {
    way();
    ExpectTidy();
    user_.Clear();
    manager_.ConvertReport("", "", "");
    EXPECT_EQ(user_.Count("show"), 1u);
    EXPECT_EQ(user_.Count("protocol"), 1u);
  }
}

}  // namespace
}  // namespace tessary
