// Two folders of reports.

#include <gmock/gmock.h>

#include "platform/path.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CreateDiffFilesTest : public ManagerTest {
 protected:
  CreateDiffFilesTest() {
    for (const char* folder : {"alt", "neu", "diff"}) memory_.PutFolder(Folder(folder));
  }

  void PutPair(const std::string& name, const std::string& reference) {
    memory_.Put(Path("alt", name), SmallReport(3, reference));
    memory_.Put(Path("neu", name), SmallReport(4, reference));
  }

  bool Create() { return manager_.CreateDiffFiles(Folder("alt"), Folder("neu"), Folder("diff")); }

  static std::string Success(const std::string& reference) {
    return "Die Differenz-Datei 3_4" + reference + " für den Bericht " + reference +
           " von Version 3 nach 4 wurde erfolgreich erstellt.";
  }

  const std::string whole_run_ = "Erstellen der Differrenzdateien in " + Folder("diff") +
                                 " ist für alle Berichte fehlgeschlagen.";
};

TEST_F(CreateDiffFilesTest, ComparesEveryReportWithItsNamesake) {
  PutPair("rechnung.lst", "Rechnung");
  PutPair("Angebot.lst", "Angebot");
  PutPair("Österreich.lst", "RechnungAT");
  ASSERT_TRUE(Create());
  EXPECT_THAT(memory_.ListFiles(Folder("diff")),
              ElementsAre("3_4Angebot", "3_4Rechnung", "3_4RechnungAT"));
  EXPECT_THAT(TextsOf(log_.dictCorrect),
              ElementsAre(Success("Angebot"), Success("Rechnung"), Success("RechnungAT")));
  EXPECT_THAT(user_.events(), ElementsAre("captions Berichtsvergleich|List & Label", "show",
                                          "step Erstellen der Differrenzdateien wird vorbereitet",
                                          "step Berichtsdateien Angebot.lst werden gelesen",
                                          "step Berichtsdateien Angebot.lst werden verglichen",
                                          "step Schreibvorgang wird vorbereitet",
                                          "step Differenzdatei 3_4Angebot wird geschrieben",
                                          "step Berichtsdateien rechnung.lst werden gelesen",
                                          "step Berichtsdateien rechnung.lst werden verglichen",
                                          "step Schreibvorgang wird vorbereitet",
                                          "step Differenzdatei 3_4Rechnung wird geschrieben",
                                          "step Berichtsdateien Österreich.lst werden gelesen",
                                          "step Berichtsdateien Österreich.lst werden verglichen",
                                          "step Schreibvorgang wird vorbereitet",
                                          "step Differenzdatei 3_4RechnungAT wird geschrieben",
                                          "stop", "close", "pointer restored"));
  EXPECT_THAT(Entries(), IsEmpty());
  ExpectTidy();
}

TEST_F(CreateDiffFilesTest, FilesThatAreNoReportsArePassedOver) {
  PutPair("A.lst", "A");
  for (const char* name : {"A.lst~", "Bericht", "liesmich.txt"}) {
    memory_.Put(Path("alt", name), name == std::string("liesmich.txt") ? "x" : SmallReport(3));
  }
  memory_.Put(Path("alt", "leer.lst"), "");
  memory_.PutFolder(Path("alt", "Ordner.lst"));
  ASSERT_TRUE(Create());
  EXPECT_EQ(log_.dictCorrect.Count(), 1);
  EXPECT_THAT(user_.Texts("passed over"),
              ElementsAre(Path("alt", "A.lst~"), Path("alt", "Bericht"), Path("alt", "leer.lst"),
                          Path("alt", "liesmich.txt")));
}

TEST_F(CreateDiffFilesTest, AReportWithoutNamesakeFailsAndTheOthersGoOn) {
  PutPair("A.lst", "A");
  PutPair("C.lst", "C");
  memory_.Put(Path("alt", "B.lst"), SmallReport(3, "B"));
  EXPECT_FALSE(Create());
  const std::string missing = Path("neu", "B.lst");
  EXPECT_THAT(ItemsOf(log_.dictErrors),
              ElementsAre(Pair("Vergleich mit dem Bericht " + missing + " fehlgeschlagen.",
                               ElementsAre("Die Datei " + missing + " existiert nicht."))));
  EXPECT_THAT(TextsOf(log_.dictCorrect), ElementsAre(Success("A"), Success("C")));
  EXPECT_EQ(user_.Count("protocol"), 1u);
  const std::vector<std::string> end(user_.events().end() - 6, user_.events().end());
  EXPECT_THAT(end, ElementsAre("stop", "close", "pointer restored", "pointer 0", "protocol",
                               "pointer restored"))
      << "shown once, at the end";
}

TEST_F(CreateDiffFilesTest, TheNamesakeIsFoundInOtherCaseUnlessOneFitsExactly) {
  memory_.Put(Path("alt", "RÜCKSCHEIN.LST"), SmallReport(3, "R"));
  memory_.Put(Path("neu", "Rückschein.lst"), SmallReport(4, "R"));
  memory_.Put(Path("alt", "b.lst"), SmallReport(3, "B"));
  memory_.Put(Path("neu", "B.lst"), SmallReport(9, "B"));
  memory_.Put(Path("neu", "b.lst"), SmallReport(4, "B"));
  EXPECT_TRUE(Create());
  EXPECT_THAT(memory_.ListFiles(Folder("diff")), ElementsAre("3_4B", "3_4R"));
}

TEST_F(CreateDiffFilesTest, FoldersThatCannotBeUsedEndTheRun) {
  PutPair("A.lst", "A");
  const std::string missing = Folder("fehlt");
  const struct {
    const char* what;
    std::string old_folder;
    std::string new_folder;
    std::string log_text;
  } rows[] = {
      {"new folder empty text", Folder("alt"), "",
       "Fehlende Pfadangabe für das Berichtsverzeichnis der neuen Versionen."},
      {"new folder before the old one", "", "",
       "Fehlende Pfadangabe für das Berichtsverzeichnis der neuen Versionen."},
      {"new folder missing", "", missing, "Der Ordner " + missing + " existiert nicht."},
      {"new folder is a file", Folder("alt"), Path("alt", "A.lst"),
       "Der Ordner " + Path("alt", "A.lst") + " existiert nicht."},
      {"old folder empty text", "", Folder("neu"),
       "Fehlende Pfadangabe für das Berichtsverzeichnis der alten Versionen."},
      {"old folder missing", missing, Folder("neu"), "Der Ordner " + missing + " existiert nicht."},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    log_ = ResultLog();
    user_.Clear();
    EXPECT_FALSE(manager_.CreateDiffFiles(row.old_folder, row.new_folder, Folder("diff")));
    EXPECT_THAT(ItemsOf(log_.dictErrors), ElementsAre(Pair(row.log_text, ElementsAre(""))));
    EXPECT_THAT(Entries(), IsEmpty());
    EXPECT_EQ(user_.Count("protocol"), 0u);
    EXPECT_EQ(user_.Count("stop"), 0u);
    ExpectTidy();
  }
}

TEST_F(CreateDiffFilesTest, EmptyFoldersEndTheRunBeforeAnyFileIsRead) {
  memory_.PutFolder(Path("alt", "Unterordner"));
  const auto expect_empty = [&](const std::string& folder) {
    log_ = ResultLog();
    user_.Clear();
    EXPECT_FALSE(Create());
    const std::string message = "Der Ordner " + folder + " ist leer.";
    EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kFolderEmpty, "CreateDiffFiles", message)));
    EXPECT_THAT(ItemsOf(log_.dictErrors), ElementsAre(Pair(whole_run_, ElementsAre(message))));
    EXPECT_EQ(user_.Count("protocol"), 0u) << "an error exit of a batch shows no protocol";
    EXPECT_EQ(files_.CountCalls(FileCall::kOpenForReading), 0);
    ExpectTidy();
  };
  expect_empty(Folder("alt"));
  memory_.Put(Path("alt", "A.lst"), SmallReport(3));
  expect_empty(Folder("neu"));
}

TEST_F(CreateDiffFilesTest, AFolderThatCannotBeListedHasTheFailuresOwnText) {
  PutPair("A.lst", "A");
  files_.FailCall(FileCall::kList, 2, kPermissionDenied);
  EXPECT_FALSE(Create());
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kPermissionDenied, "CreateDiffFiles",
                                                  RunTimeErrorText(kPermissionDenied))));
  EXPECT_THAT(TextsOf(log_.dictErrors), ElementsAre(whole_run_));
}

TEST_F(CreateDiffFilesTest, AnEarlierFailureMakesEveryLaterRunFalse) {
  PutPair("A.lst", "A");
  EXPECT_FALSE(manager_.CreateDiffFile("", "", ""));
  user_.Clear();
  BXConvertLLMgr another(log_, {files_, user_});
  EXPECT_FALSE(another.CreateDiffFiles(Folder("alt"), Folder("neu"), Folder("diff")));
  EXPECT_EQ(another.CountCorrectReports(), 1);
  EXPECT_EQ(user_.Count("protocol"), 1u);
}

TEST_F(CreateDiffFilesTest, TheCollectionHoldsAllEntriesAndEachItemItsOwn) {
  PutPair("A.lst", "A");
  memory_.Put(Path("neu", "A.lst"), SmallReport(2, "A"));
  PutPair("B.lst", "B/");
  PutPair("C.lst", "C");
  memory_.Put(Path("neu", "C.lst"), SmallReport(4, "X"));
  const Ref<ErrorCollection> before = manager_.Errors();
  EXPECT_FALSE(Create());
  const std::string too_old =
      "Die Version 3 des alten Berichts A.lst ist größer oder gleich der Version 2 des neuen "
      "Berichts A.lst";
  const std::string not_written =
      "Fehler beim Schreiben der Differenz-Datei " + Path("diff", "3_4B/");
  const std::string other = "Die Dateien C.lst und C.lst sind Berichte unterschiedlicher Referenz.";
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kWrongKindOfFile, "CreateDiffFile", too_old),
                                     ManagerEntry(kBadFileName, "CreateDiffFile", not_written),
                                     ManagerEntry(kWrongKindOfFile, "CreateDiffFile", other)));
  EXPECT_NE(manager_.Errors().get(), before.get()) << "a batch replaces the collection";
  EXPECT_THAT(
      ItemsOf(log_.dictErrors),
      ElementsAre(Pair("Versionsabgleich des 'alten' Berichtes A.lst mit dem 'neuen' Bericht "
                       "A.lst fehlgeschlagen.",
                       ElementsAre(too_old)),
                  Pair("Versionsabgleich des Berichtes B.lst von Version 3 nach 4 fehlgeschlagen.",
                       ElementsAre(not_written)),
                  Pair("Versionsabgleich des 'alten' Berichtes C.lst mit dem 'neuen' Bericht "
                       "C.lst fehlgeschlagen.",
                       ElementsAre(other))));
}

TEST_F(CreateDiffFilesTest, TwoReportsWithOneDifferenceFileNameAreTold) {
  PutPair("A.lst", "Rechnung");
  PutPair("B.lst", "RECHNUNG");
  PutPair("C.lst", "Andere");
  EXPECT_TRUE(Create());
  EXPECT_THAT(user_.Warnings(),
              ElementsAre("Die Berichte A.lst und B.lst ergeben dieselbe Differenz-Datei "
                          "3_4RECHNUNG; die spätere ersetzt die frühere."));
  user_.Clear();
  EXPECT_TRUE(manager_.CreateDiffFile(Path("alt", "A.lst"), Path("neu", "A.lst"), Folder("diff")));
  EXPECT_THAT(user_.Warnings(), IsEmpty()) << "only within one run";
  EXPECT_TRUE(Create());
  EXPECT_EQ(user_.Warnings().size(), 1u) << "each run counts anew";
}

TEST_F(CreateDiffFilesTest, AReportThatVanishesMeanwhileIsLeftOut) {
  PutPair("A.lst", "A");
  PutPair("B.lst", "B");
  user_.AfterEvent([&](const std::string& event) {
    if (event.ends_with("3_4A wird geschrieben")) memory_.Remove(Path("alt", "B.lst"));
  });
  EXPECT_TRUE(Create());
  EXPECT_THAT(TextsOf(log_.dictCorrect), ElementsAre(Success("A")));
  EXPECT_THAT(user_.Texts("passed over"), IsEmpty());
}

// After every way out a single operation shows its own window and the protocol again.
TEST_F(CreateDiffFilesTest, TheBatchEndsOnEveryWayOut) {
  const std::function<void()> ways[] = {
      [&] { manager_.CreateDiffFiles(Folder("alt"), "", ""); },
      [&] { manager_.CreateDiffFiles(Folder("alt"), Folder("neu"), ""); },
      [&] {
        PutPair("A.lst", "A");
        Create();
      },
      [&] {
        files_.FailCall(FileCall::kList, 1, kDeviceError);
        files_.FailCall(FileCall::kList, 2, kDeviceError);
        files_.FailCall(FileCall::kList, 3, kDeviceError);
        Create();
      },
  };
  for (const auto& way : ways) {
    way();
    ExpectTidy();
    user_.Clear();
    manager_.CreateDiffFile("", "", "");
    EXPECT_EQ(user_.Count("show"), 1u);
    EXPECT_EQ(user_.Count("protocol"), 1u);
  }
}

TEST_F(CreateDiffFilesTest, AFailureBetweenReportsNamesBothFiles) {
  PutPair("A.lst", "A");
  class ThrowingNotices : public RunNotices {
   public:
    void Warning(const std::string&) override {}
    void PassedOver(const std::string&) override { throw std::bad_alloc(); }
    void SkippedByAnswer(const std::string&) override {}
  } notices;
  memory_.Put(Path("alt", "B.txt"), "x");
  BXConvertLLMgr manager(log_, {files_, user_, nullptr, &notices});
  EXPECT_FALSE(manager.CreateDiffFiles(Folder("alt"), Folder("neu"), Folder("diff")));
  const std::string message = "Fehler beim Vorbereiten des Versionsabgleich für die Dateien " +
                              Path("alt", "B.txt") + " und " + Path("neu", "B.txt");
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kOutOfMemory, "CreateDiffFiles", message)));
  EXPECT_THAT(ItemsOf(log_.dictErrors), ElementsAre(Pair(whole_run_, ElementsAre(message))));
  EXPECT_EQ(user_.Count("protocol"), 0u);
  ExpectTidy();
}

}  // namespace
}  // namespace tessary
