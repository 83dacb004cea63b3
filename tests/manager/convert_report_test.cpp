// One report and one difference file.

#include <gmock/gmock.h>

#include "platform/path.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class ConvertReportTest : public ManagerTest {
 protected:
  ConvertReportTest() {
    memory_.Put(Path("alt", "r.lst"), SmallReport(3));
    memory_.Put(Path("neu", "r.lst"), SmallReport(4));
    memory_.PutFolder(Folder("diff"));
    EXPECT_TRUE(
        manager_.CreateDiffFile(Path("alt", "r.lst"), Path("neu", "r.lst"), Folder("diff")));
    memory_.Put(report_, original_);
    StartAnew();
  }

  void StartAnew() {
    log_ = ResultLog();
    user_.Clear();
    files_.Reset();
  }

  bool Convert() { return manager_.ConvertReport(report_, diff_, backup_folder_); }

  // Fails every write of the report after its first half has been put in place.
  void DamageReport() { files_.FailCall(FileCall::kCommit, 1, kDiskFull, Damage::kHalfWritten); }

  std::vector<std::string> WriteEntries(std::int32_t number, const char* inner) const {
    return {ManagerEntry(number, "WriteFile", inner),
            ManagerEntry(number, "ConvertReport", "Fehler beim Schreiben in die Datei Kopie.lst")};
  }

  static std::string ReportQuestion(const std::string& name) {
    return "Der Bericht " + name +
           " konnte nicht gesichert werden.\r\nFalls Probleme bei der Konvertierung auftreten, "
           "kann der Bericht beschädigt und Programmteile möglicherweise nicht mehr richtig "
           "ausgeführt werden.\r\nKonvertierung für diesen Bericht trotzdem durchführen?";
  }
  static std::string FolderQuestion(const std::string& folder) {
    return "Das BackUp-Verzeichnis " + folder +
           " konnte nicht erstellt werden. Die Berichte werden ohne Sicherung "
           "überschrieben.\r\nFalls Probleme bei der Konvertierung auftreten, können "
           "Programmteile möglicherweise nicht mehr richtig ausgeführt "
           "werden.\r\nKonvertierung trotzdem durchführen?";
  }

  const std::string original_ = SmallReport(3) + FileText({" Width=7"});
  const std::string converted_ = SmallReport(4) + FileText({" Width=7"});
  std::string report_ = Path("Berichte", "Kopie.lst");
  std::string diff_ = Path("diff", "3_4Rechnung");
  std::string backup_folder_;
  const std::string default_backup_ = Path("BerichteBak", "Kopie.lst");
  const std::string log_text_ =
      "Konvertierung des Berichts Kopie.lst von Version 3 nach 4 fehlgeschlagen.";
};

TEST_F(ConvertReportTest, TakesOverTheVendorsChangesAndKeepsTheCustomersOwn) {
  ASSERT_TRUE(Convert());
  EXPECT_EQ(memory_.Get(report_), converted_);
  EXPECT_EQ(memory_.Get(default_backup_), original_);
  EXPECT_THAT(user_.events(),
              ElementsAre("captions Berichtskonvertierung|List & Label", "show",
                          "step Berichtskonvertierung wird vorbereitet", "pointer 11", "pointer 11",
                          "step Differenzdatei wird gelesen", "step Berichtsdatei wird gelesen",
                          "step Bericht Kopie.lst wird von Version 3 nach 4 konvertiert",
                          "step Bericht Kopie.lst wird von Version 3 nach 4 aktualisiert", "stop",
                          "close", "pointer restored"));
  EXPECT_THAT(ItemsOf(log_.dictCorrect),
              ElementsAre(Pair("Der Bericht Kopie.lst wurde erfolgreich von Version 3 nach 4 "
                               "konvertiert.",
                               ElementsAre(""))));
  EXPECT_THAT(Entries(), IsEmpty());
  ExpectTidy();
}

TEST_F(ConvertReportTest, BackupFolders) {
  const std::string named = Folder("Sicherung");
  const struct {
    const char* what;
    std::string wanted;
    std::string copy;
  } rows[] = {
      {"default", "", default_backup_},
      {"blank", "   ", default_backup_},
      {"named", named, JoinPath(named, "Kopie.lst")},
      {"named with blanks around", " " + named + "  ", JoinPath(named, "Kopie.lst")},
      {"named with a separator", JoinPath(named, ""), JoinPath(named, "Kopie.lst")},
  };
  for (const auto& row : rows) {
    memory_.Put(report_, original_);
    memory_.Remove(row.copy);
    EXPECT_TRUE(manager_.ConvertReport(report_, diff_, row.wanted)) << row.what;
    EXPECT_EQ(memory_.Get(row.copy), original_) << row.what;
  }
}

TEST_F(ConvertReportTest, ArgumentsAreChecked) {
  const std::string missing = Path("Berichte", "fehlt.lst");
  const std::string none = Path("Berichte", "Notiz.txt");
  memory_.Put(none, "x");
  const std::string missing_diff = Path("diff", "4_5Rechnung");
  for (const char* name : {"4_3Rechnung", "Rechnung", "3_", "0_4Rechnung"}) {
    memory_.Put(Path("diff", name), memory_.Get(diff_));
  }
  const std::string report_text = "Konvertierung des Berichts Kopie.lst fehlgeschlagen.";
  const struct {
    const char* what;
    std::string report;
    std::string diff;
    std::string log_text;
    std::int32_t number;
    std::string message;
    bool backed_up;
  } rows[] = {
      {"no report", "", diff_, "Fehlende Pfadangabe für den zu konvertierenden Bericht.", 0, "",
       false},
      {"report missing", missing, diff_,
       "Konvertierung des Berichts " + missing + " fehlgeschlagen.", kDoesNotExist,
       "Die Datei " + missing + " existiert nicht.", false},
      {"a folder", Folder("Berichte"), diff_,
       "Konvertierung des Berichts " + Folder("Berichte") + " fehlgeschlagen.", kDoesNotExist,
       "Die Datei " + Folder("Berichte") + " existiert nicht.", false},
      {"not a report", none, diff_, "Konvertierung des Berichts Notiz.txt fehlgeschlagen.",
       kWrongKindOfFile, "Die Datei Notiz.txt ist keine List & Label Berichtsdatei.", false},
      {"no difference file", report_, "", "Fehlende Pfadangabe für den Differenz-Bericht.", 0, "",
       true},
      {"difference file missing", report_, missing_diff, report_text, kDoesNotExist,
       "Die Differenz-Datei " + missing_diff + " existiert nicht.", true},
      {"new version lower", report_, Path("diff", "4_3Rechnung"), report_text, kWrongKindOfFile,
       "Die Differenz-Datei 4_3Rechnung entspricht keiner List & Label Differenz-Berichtsdatei.",
       true},
      {"no versions", report_, Path("diff", "Rechnung"), report_text, kWrongKindOfFile,
       "Die Differenz-Datei Rechnung entspricht keiner List & Label Differenz-Berichtsdatei.",
       true},
      {"no reference", report_, Path("diff", "3_"), report_text, kWrongKindOfFile,
       "Die Differenz-Datei 3_ entspricht keiner List & Label Differenz-Berichtsdatei.", true},
      {"old version 0", report_, Path("diff", "0_4Rechnung"), report_text, kWrongKindOfFile,
       "Die Differenz-Datei 0_4Rechnung entspricht keiner List & Label Differenz-Berichtsdatei.",
       true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    StartAnew();
    memory_.Remove(default_backup_);
    EXPECT_FALSE(manager_.ConvertReport(row.report, row.diff, ""));
    std::vector<std::string> entries;
    if (row.number != 0) entries = {ManagerEntry(row.number, "ConvertReport", row.message)};
    EXPECT_THAT(Entries(), ElementsAreArray(entries));
    EXPECT_THAT(ItemsOf(log_.dictErrors),
                ElementsAre(Pair(row.log_text, ElementsAre(row.message))));
    EXPECT_EQ(memory_.Get(report_), original_);
    EXPECT_EQ(memory_.FileExists(default_backup_), row.backed_up)
        << "the backup precedes the checks of the difference file";
    const std::vector<std::string> end(user_.events().end() - 5, user_.events().end());
    EXPECT_THAT(
        end, ElementsAre("close", "pointer restored", "pointer 0", "protocol", "pointer restored"));
    EXPECT_EQ(user_.Count("stop"), 0u);
    ExpectTidy();
  }
}

TEST_F(ConvertReportTest, TheMatchOfVersionsAndReferencesIsTheCallersDuty) {
  memory_.Put(report_, ReportText(7, "Lieferschein",
                                  {"[Object]", " ObjectName=Kopf", " LinkID=1", " Height=700"}));
  ASSERT_TRUE(Convert());
  EXPECT_THAT(memory_.Get(report_), HasSubstr(" Version=4\r\n Referenzbeleg=Lieferschein\r\n"));
  EXPECT_THAT(memory_.Get(report_), HasSubstr(" Height=400\r\n"));
}

TEST_F(ConvertReportTest, AnEmptyDifferenceFileSucceedsWithoutAChange) {
  memory_.Put(diff_, "\r\n  \r\n");
  ASSERT_TRUE(Convert());
  EXPECT_EQ(memory_.Get(report_), original_);
  EXPECT_EQ(memory_.Get(default_backup_), original_);
  EXPECT_THAT(user_.Steps(),
              ElementsAre("Berichtskonvertierung wird vorbereitet", "Differenzdatei wird gelesen"));
  EXPECT_EQ(log_.dictCorrect.Count(), 1);
  EXPECT_EQ(files_.CountCalls(FileCall::kOpenForReplacing), 0);
}

TEST_F(ConvertReportTest, AReportWithoutLinesTakesWhatTheDifferencesAdd) {
  memory_.Put(report_, "}\r\n" + SmallReport(3));
  EXPECT_TRUE(Convert());
  EXPECT_EQ(memory_.Get(default_backup_), "}\r\n" + SmallReport(3));
  EXPECT_EQ(user_.Warnings().size(), 2u);
}

TEST_F(ConvertReportTest, EveryStepHasItsExit) {
  const struct {
    const char* what;
    FileCall call;
    int n;
    std::int32_t number;
    const char* procedure;
    const char* inner;
    const char* message;
  } rows[] = {
      {"difference file", FileCall::kOpenForReading, 1, kPermissionDenied, "ReadFile",
       "Fehler beim Öffnen der Datei 3_4Rechnung", "Fehler beim Lesen der Datei 3_4Rechnung"},
      {"difference file breaks off", FileCall::kRead, 1, kDeviceError, "ReadFile",
       "Fehler beim Lesen aus der Datei 3_4Rechnung", "Fehler beim Lesen der Datei 3_4Rechnung"},
      {"report", FileCall::kOpenForReading, 2, kPermissionDenied, "ReadFile",
       "Fehler beim Öffnen der Datei Kopie.lst", "Fehler beim Lesen der Datei Kopie.lst"},
      {"opening", FileCall::kOpenForReplacing, 1, kPermissionDenied, "WriteFile",
       "Fehler beim Öffnen der Datei Kopie.lst", "Fehler beim Schreiben in die Datei Kopie.lst"},
      {"writing", FileCall::kWrite, 1, kDiskFull, "WriteFile",
       "Fehler beim Schreiben in Datei Kopie.lst", "Fehler beim Schreiben in die Datei Kopie.lst"},
      {"committing", FileCall::kCommit, 1, kDiskFull, "WriteFile",
       "Fehler beim Schreiben in Datei Kopie.lst", "Fehler beim Schreiben in die Datei Kopie.lst"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    StartAnew();
    files_.FailCall(row.call, row.n, row.number);
    EXPECT_FALSE(Convert());
    EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(row.number, row.procedure, row.inner),
                                       ManagerEntry(row.number, "ConvertReport", row.message)));
    EXPECT_THAT(ItemsOf(log_.dictErrors),
                ElementsAre(Pair(log_text_, ElementsAre(row.message, row.inner))));
    EXPECT_EQ(memory_.Get(report_), original_);
    EXPECT_EQ(files_.CountCalls(FileCall::kCopy), 1) << "nothing is restored";
    EXPECT_EQ(user_.Count("protocol"), 1u);
    ExpectTidy();
  }
}

TEST_F(ConvertReportTest, AFailingConversionLeavesTheReportAlone) {
  user_.AfterEvent([&](const std::string& event) {
    if (event.ends_with("konvertiert")) loop_.FailAt(1, kOverflow);
  });
  EXPECT_FALSE(Convert());
  ASSERT_GE(Entries().size(), 2u);
  EXPECT_EQ(Entries().back(),
            ManagerEntry(kOverflow, "ConvertReport",
                         "Fehler beim Konvertierungsvorgang der Datei Kopie.lst"));
  EXPECT_EQ(memory_.Get(report_), original_);
  EXPECT_THAT(TextsOf(log_.dictErrors), ElementsAre(log_text_));
}

TEST_F(ConvertReportTest, AReportWithAByteOrderMarkIsNeverWritten) {
  const std::string marked = "\xEF\xBB\xBF" + SmallReport(3);
  memory_.Put(report_, marked);
  EXPECT_FALSE(Convert());
  EXPECT_THAT(
      Entries(),
      ElementsAre(
          ManagerEntry(kInvalidCall, "ReadFile", "Fehler beim Verarbeiten einer Zeile."),
          ManagerEntry(kInvalidCall, "ConvertReport", "Fehler beim Lesen der Datei Kopie.lst")));
  EXPECT_EQ(memory_.Get(report_), marked);
}

TEST_F(ConvertReportTest, AReadOnlyReportIsLeftAlone) {
  memory_.SetReadOnly(report_);
  EXPECT_FALSE(Convert());
  EXPECT_THAT(Entries(), ElementsAreArray(WriteEntries(kPermissionDenied,
                                                       "Fehler beim Öffnen der Datei Kopie.lst")));
  EXPECT_EQ(memory_.Get(report_), original_);
}

TEST_F(ConvertReportTest, AHalfWrittenReportIsRestored) {
  DamageReport();
  EXPECT_FALSE(Convert());
  EXPECT_EQ(memory_.Get(report_), original_);
  EXPECT_EQ(files_.CountCalls(FileCall::kCopy), 2);
  EXPECT_THAT(Entries(), ElementsAreArray(
                             WriteEntries(kDiskFull, "Fehler beim Schreiben in Datei Kopie.lst")));
}

TEST_F(ConvertReportTest, AWriteInPlaceThatFindsNoRoomIsRestored) {
  memory_.SetInPlace(report_);
  memory_.Put(diff_, memory_.Get(diff_) + FileText({"N(Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:"
                                                    "NextName=:NextKey=:NextTyp=:PosNr=);[Neu]"}));
  std::size_t used = 0;
  for (const auto& [path, contents] : memory_.files()) used += contents.size();
  memory_.SetCapacity(used + original_.size());  // room for the backup and no more
  EXPECT_FALSE(Convert());
  EXPECT_THAT(Entries(), ElementsAreArray(
                             WriteEntries(kDiskFull, "Fehler beim Schreiben in Datei Kopie.lst")));
  EXPECT_EQ(memory_.Get(report_), original_);
  EXPECT_EQ(memory_.Get(default_backup_), original_);
}

TEST_F(ConvertReportTest, ADamagedReportWithoutAUsableBackupIsToldOf) {
  const std::string not_restored =
      "Die Datei Kopie.lst wurde möglicherweise beschädigt und konnte nicht wiederhergestellt "
      "werden. Bitte versuchen Sie die Datei manuell wiederherzustellen.";
  DamageReport();
  files_.FailCall(FileCall::kCopy, 2, kPermissionDenied);
  EXPECT_FALSE(Convert());
  std::vector<std::string> entries =
      WriteEntries(kDiskFull, "Fehler beim Schreiben in Datei Kopie.lst");
  entries.push_back(
      ManagerEntry(kPermissionDenied, "RestoreFile", not_restored, ErrorEntry::kNotRestored));
  EXPECT_THAT(Entries(), ElementsAreArray(entries));
  EXPECT_THAT(
      ItemsOf(log_.dictErrors),
      ElementsAre(
          Pair(log_text_, ElementsAre(not_restored, "Fehler beim Schreiben in die Datei Kopie.lst",
                                      "Fehler beim Schreiben in Datei Kopie.lst"))));
  EXPECT_EQ(memory_.Get(default_backup_), original_);
}

TEST_F(ConvertReportTest, ABackupFolderThatCannotBeCreatedIsAskedAbout) {
  const std::string parent_missing = JoinPath(Folder("fehlt"), "Sicherung");
  for (const Answer answer : {Answer::kYes, Answer::kNo}) {
    StartAnew();
    user_.AnswerNext(answer);
    const bool yes = answer == Answer::kYes;
    EXPECT_EQ(manager_.ConvertReport(report_, diff_, " " + parent_missing), yes);
    EXPECT_THAT(user_.Questions(), ElementsAre(FolderQuestion(parent_missing)));
    EXPECT_EQ(memory_.Get(report_), yes ? converted_ : original_);
    EXPECT_EQ(files_.CountCalls(FileCall::kCopy), 0);
    EXPECT_EQ(user_.Texts("skipped").size(), yes ? 0u : 1u);
    EXPECT_EQ(log_.dictErrors.Count(), 0);
    EXPECT_EQ(user_.Count("protocol"), 0u);
    ExpectTidy();
    memory_.Put(report_, original_);
  }
}

TEST_F(ConvertReportTest, AnAnswerOfNoEndsTheOperationQuietly) {
  files_.FailCall(FileCall::kCreateFolder, 1, kPermissionDenied);
  user_.AnswerNext(Answer::kNo);
  EXPECT_FALSE(Convert());
  EXPECT_THAT(user_.events(),
              ElementsAre("captions Berichtskonvertierung|List & Label", "show",
                          "step Berichtskonvertierung wird vorbereitet", "pointer 0",
                          "ask " + FolderQuestion(Folder("BerichteBak")), "skipped " + report_,
                          "close", "pointer restored"));
  EXPECT_EQ(log_.dictCorrect.Count(), 0);
}

TEST_F(ConvertReportTest, AFileInPlaceOfTheBackupFolderIsAskedAbout) {
  memory_.Put(Folder("BerichteBak"), "no folder");
  user_.AnswerNext(Answer::kYes);
  EXPECT_TRUE(Convert());
  EXPECT_THAT(user_.Questions(), ElementsAre(FolderQuestion(Folder("BerichteBak"))));
  EXPECT_EQ(memory_.Get(Folder("BerichteBak")), "no folder");
}

TEST_F(ConvertReportTest, AReportThatCannotBeSavedIsAskedAbout) {
  for (const Answer answer : {Answer::kYes, Answer::kNo}) {
    StartAnew();
    files_.FailCall(FileCall::kCopy, 1, kDiskFull);
    user_.AnswerNext(answer);
    const bool yes = answer == Answer::kYes;
    EXPECT_EQ(Convert(), yes);
    EXPECT_THAT(user_.Questions(), ElementsAre(ReportQuestion("Kopie.lst")));
    EXPECT_EQ(memory_.Get(report_), yes ? converted_ : original_);
    EXPECT_EQ(log_.dictErrors.Count(), 0);
    if (yes) {
      EXPECT_EQ(user_.events().at(3), "pointer 11");
      EXPECT_EQ(user_.events().at(4), "pointer 0") << "the question has the default pointer";
      EXPECT_EQ(user_.events().at(6), "pointer 11") << "the hourglass comes back";
    } else {
      EXPECT_THAT(user_.Texts("skipped"), ElementsAre(report_));
    }
    ExpectTidy();
    memory_.Put(report_, original_);
  }
}

TEST_F(ConvertReportTest, TheBackupOntoTheReportItselfIsAskedAbout) {
  memory_.PutLink(Path("Link", "Kopie.lst"), report_);
  for (const char* folder : {"Berichte", "Link"}) {
    for (const Answer answer : {Answer::kNo, Answer::kYes}) {
      SCOPED_TRACE(folder);
      StartAnew();
      memory_.Put(report_, original_);
      user_.AnswerNext(answer);
      EXPECT_EQ(manager_.ConvertReport(report_, diff_, Folder(folder)), answer == Answer::kYes);
      EXPECT_THAT(user_.Questions(), ElementsAre(ReportQuestion("Kopie.lst")));
      EXPECT_EQ(memory_.Get(report_), answer == Answer::kYes ? converted_ : original_);
      EXPECT_THAT(memory_.ListFiles(Folder("Berichte")), ElementsAre("Kopie.lst"));
    }
  }
}

// With the backup skipped the restore takes whatever copy there is.
TEST_F(ConvertReportTest, ARestoreWithoutABackupTakesAnOlderCopy) {
  memory_.Put(default_backup_, "older copy");
  files_.FailCall(FileCall::kRename, 1, kPermissionDenied);
  DamageReport();
  user_.AnswerNext(Answer::kYes);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(memory_.Get(report_), "older copy");
  EXPECT_EQ(Entries().size(), 2u);
}

TEST_F(ConvertReportTest, ARestoreWithoutAnyCopyAddsAnEntryOfKind1) {
  files_.FailCall(FileCall::kCopy, 1, kPermissionDenied);
  DamageReport();
  user_.AnswerNext(Answer::kYes);
  EXPECT_FALSE(Convert());
  ASSERT_EQ(Entries().size(), 3u);
  EXPECT_THAT(Entries().back(), HasSubstr("1 53 BXConvertLLMgr Prozedur: RestoreFile: "));
}

TEST_F(ConvertReportTest, AnOlderDifferentCopyIsKept) {
  const auto kept = [](int n) { return Path("BerichteBak", "~Kopie.lst.~" + std::to_string(n)); };
  memory_.Put(default_backup_, "first");
  ASSERT_TRUE(Convert());
  EXPECT_EQ(memory_.Get(kept(1)), "first");
  EXPECT_EQ(memory_.Get(default_backup_), original_);
  EXPECT_THAT(user_.Warnings(),
              ElementsAre("Im Sicherungsverzeichnis " + Folder("BerichteBak") +
                          " lag bereits eine andere Fassung von Kopie.lst; sie bleibt dort als "
                          "~Kopie.lst.~1 erhalten."));
  ASSERT_TRUE(Convert()) << "a second run finds another copy to keep";
  EXPECT_EQ(memory_.Get(kept(1)), "first");
  EXPECT_EQ(memory_.Get(kept(2)), original_);
  EXPECT_EQ(memory_.Get(default_backup_), converted_);

  StartAnew();
  ASSERT_TRUE(Convert()) << "the same contents need no further copy";
  EXPECT_THAT(user_.Warnings(), IsEmpty());
  EXPECT_EQ(memory_.ListFiles(Folder("BerichteBak")).size(), 3u);
}

TEST_F(ConvertReportTest, AnOlderCopyStaysInPlaceWhenTheNewOneFails) {
  memory_.Put(default_backup_, "first");
  files_.FailCall(FileCall::kCopy, 1, kDiskFull);
  user_.AnswerNext(Answer::kNo);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(memory_.Get(default_backup_), "first");
  EXPECT_EQ(memory_.ListFiles(Folder("BerichteBak")).size(), 1u);
  EXPECT_THAT(user_.Warnings(), IsEmpty());
}

TEST_F(ConvertReportTest, TheFlagOfADamagedReportDoesNotOutliveItsOperation) {
  DamageReport();
  EXPECT_FALSE(Convert());
  StartAnew();
  files_.FailCall(FileCall::kWrite, 1, kDiskFull);
  EXPECT_FALSE(Convert());
  EXPECT_EQ(files_.CountCalls(FileCall::kCopy), 1) << "no restore";
}

TEST_F(ConvertReportTest, ASecondRunWithTheSameDifferencesChangesNothing) {
  ASSERT_TRUE(Convert());
  ASSERT_TRUE(Convert());
  EXPECT_EQ(memory_.Get(report_), converted_);
}

}  // namespace
}  // namespace tessary
