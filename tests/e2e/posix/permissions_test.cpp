// Rights, links and shared files of a system with modes and symbolic links.

#include <gmock/gmock.h>

#include <filesystem>

#include "support/real_files_test_base.h"
#include "support/unprivileged.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

class PermissionsTest : public RealFilesTest {
 protected:
  PermissionsTest() {
    Put("alt/r.lst", SmallReport(3));
    Put("neu/r.lst", SmallReport(4));
    PutFolder("diff");
    EXPECT_TRUE(CreateDiffFiles("alt", "neu"));
    Put("R/A.lst", SmallReport(3));
    Put("R/B.lst", SmallReport(3));
    log_ = ResultLog();
    user_.Clear();
  }

  void SetMode(std::string_view path, unsigned mode) const {
    fs::permissions(In(path), static_cast<fs::perms>(mode));
  }
  unsigned ModeOf(std::string_view path) const {
    return static_cast<unsigned>(fs::status(In(path)).permissions());
  }
  bool ConvertA(std::string_view backup_folder) {
    return manager_.ConvertReport(In("R/A.lst"), In("diff/3_4Rechnung"),
                                  std::string(backup_folder));
  }
};

TEST_F(PermissionsTest, AnUnreadableReportIsPassedOverInAFolder) {
  TESSARY_RUN_UNPRIVILEGED();
  SetMode("R/A.lst", 0);
  EXPECT_TRUE(ConvertReports("R"));
  EXPECT_THAT(user_.Texts("passed over"), ElementsAre(In("R/A.lst")));
  EXPECT_EQ(Get("R/B.lst"), SmallReport(4));
  EXPECT_FALSE(ConvertA(""));
  EXPECT_THAT(Entries(),
              ElementsAre(ManagerEntry(kWrongKindOfFile, "ConvertReport",
                                       "Die Datei A.lst ist keine List & Label Berichtsdatei.")));
  SetMode("R/A.lst", 0600);
  EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
}

TEST_F(PermissionsTest, AnUnreadableDifferenceFileFailsItsReports) {
  TESSARY_RUN_UNPRIVILEGED();
  SetMode("diff/3_4Rechnung", 0);
  EXPECT_FALSE(ConvertReports("R"));
  EXPECT_EQ(log_.dictErrors.Count(), 2);
  EXPECT_EQ(Entries()[0], ManagerEntry(kPermissionDenied, "ReadFile",
                                       "Fehler beim Öffnen der Datei 3_4Rechnung"));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
}

TEST_F(PermissionsTest, AReadOnlyReportFailsAlone) {
  SetMode("R/A.lst", 0444);
  EXPECT_FALSE(ConvertReports("R"));
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kPermissionDenied, "WriteFile",
                                                  "Fehler beim Öffnen der Datei A.lst"),
                                     ManagerEntry(kPermissionDenied, "ConvertReport",
                                                  "Fehler beim Schreiben in die Datei A.lst")));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
  EXPECT_EQ(Get("R/B.lst"), SmallReport(4));
  EXPECT_EQ(ModeOf("R/A.lst"), 0444u);
  EXPECT_THAT(SystemFiles().ListFiles(In("R")), ElementsAre("A.lst", "B.lst"));
}

TEST_F(PermissionsTest, TheModeOfAReportIsKept) {
  SetMode("R/A.lst", 0640);
  SetMode("R/B.lst", 0664);
  ASSERT_TRUE(ConvertReports("R"));
  EXPECT_EQ(ModeOf("R/A.lst"), 0640u);
  EXPECT_EQ(ModeOf("R/B.lst"), 0664u);
}

TEST_F(PermissionsTest, AFolderWithoutRightToCreateFilesIsWrittenInPlace) {
  TESSARY_RUN_UNPRIVILEGED();
  SetMode("R", 0555);
  EXPECT_TRUE(ConvertReports("R"));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(4));
  EXPECT_EQ(Get("RBak/A.lst"), SmallReport(3));
}

TEST_F(PermissionsTest, AParentWithoutRightToCreateTheBackupFolderIsAskedAbout) {
  TESSARY_RUN_UNPRIVILEGED();
  PutFolder("zu/R");
  fs::rename(In("R/A.lst"), In("zu/R/A.lst"));
  SetMode("zu", 0555);
  user_.AnswerNext(Answer::kNo);
  EXPECT_FALSE(ConvertReports("zu/R"));
  ASSERT_THAT(user_.Questions(), SizeIs(1));
  EXPECT_TRUE(user_.Questions()[0].starts_with("Das BackUp-Verzeichnis " + In("zu/RBak") +
                                               " konnte nicht erstellt werden."));
  user_.AnswerNext(Answer::kYes);
  EXPECT_TRUE(ConvertReports("zu/R"));
  EXPECT_EQ(Get("zu/R/A.lst"), SmallReport(4));
}

TEST_F(PermissionsTest, AnUnreadableFolderEndsTheRun) {
  TESSARY_RUN_UNPRIVILEGED();
  SetMode("R", 0111);
  EXPECT_FALSE(ConvertReports("R"));
  ASSERT_THAT(Entries(), SizeIs(2));
  EXPECT_THAT(Entries()[0],
              HasSubstr(" 70 BXConvertLLMgr Prozedur: CreateFileArraysForConversion: "));
  SetMode("R", 0755);
  EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
}

TEST_F(PermissionsTest, ADifferenceFolderWithoutRightToWriteHasItsExit) {
  TESSARY_RUN_UNPRIVILEGED();
  PutFolder("zu");
  SetMode("zu", 0555);
  EXPECT_FALSE(manager_.CreateDiffFile(In("alt/r.lst"), In("neu/r.lst"), In("zu")));
  EXPECT_THAT(
      Entries(),
      ElementsAre(
          ManagerEntry(kPermissionDenied, "WriteFile", "Fehler beim Öffnen der Datei 3_4Rechnung"),
          ManagerEntry(kPermissionDenied, "CreateDiffFile",
                       "Fehler beim Schreiben der Differenz-Datei " + In("zu/3_4Rechnung"))));
}

TEST_F(PermissionsTest, TheReportFolderAsBackupFolderNeverTruncates) {
  fs::create_directory_symlink(In("R"), In("Link"));
  for (const char* folder : {"R", "Link", "R/.", "R/../R"}) {
    for (const Answer answer : {Answer::kNo, Answer::kYes}) {
      SCOPED_TRACE(folder);
      user_.Clear();
      Put("R/A.lst", SmallReport(3));
      user_.AnswerNext(answer);
      EXPECT_EQ(ConvertA(In(folder)), answer == Answer::kYes);
      EXPECT_EQ(Get("R/A.lst"), SmallReport(answer == Answer::kYes ? 4 : 3));
      ASSERT_THAT(user_.Questions(), SizeIs(1));
      EXPECT_TRUE(
          user_.Questions()[0].starts_with("Der Bericht A.lst konnte nicht gesichert werden."));
      EXPECT_THAT(SystemFiles().ListFiles(In("R")), ElementsAre("A.lst", "B.lst"));
    }
  }
}

TEST_F(PermissionsTest, ABackupThatIsALinkToTheReportIsAskedAbout) {
  PutFolder("Sicherung");
  fs::create_symlink(In("R/A.lst"), In("Sicherung/A.lst"));
  user_.AnswerNext(Answer::kNo);
  EXPECT_FALSE(ConvertA(In("Sicherung")));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
  fs::remove(In("Sicherung/A.lst"));
  fs::create_hard_link(In("R/A.lst"), In("Sicherung/A.lst"));
  user_.AnswerNext(Answer::kNo);
  EXPECT_FALSE(ConvertA(In("Sicherung")));
  EXPECT_EQ(Get("R/A.lst"), SmallReport(3));
}

TEST_F(PermissionsTest, AReportThatIsALinkStaysOne) {
  Put("Ablage/Original.lst", SmallReport(3));
  fs::create_symlink(In("Ablage/Original.lst"), In("R/Link.lst"));
  ASSERT_TRUE(ConvertReports("R"));
  EXPECT_TRUE(fs::is_symlink(In("R/Link.lst")));
  EXPECT_EQ(Get("Ablage/Original.lst"), SmallReport(4));
  EXPECT_EQ(Get("RBak/Link.lst"), SmallReport(3));
  EXPECT_FALSE(fs::is_symlink(In("RBak/Link.lst")));
}

TEST_F(PermissionsTest, AReportWithSeveralNamesKeepsThem) {
  fs::create_hard_link(In("R/A.lst"), In("anderer Name"));
  ASSERT_TRUE(ConvertReports("R"));
  EXPECT_EQ(Get("anderer Name"), SmallReport(4));
  EXPECT_EQ(fs::hard_link_count(In("R/A.lst")), 2u);
}

TEST_F(PermissionsTest, LinksThatLeadNowhereAndLoopsAreNoFiles) {
  fs::create_symlink(In("fehlt"), In("R/tot.lst"));
  fs::create_symlink(In("R/kreis.lst"), In("R/kreis.lst"));
  EXPECT_TRUE(ConvertReports("R"));
  EXPECT_THAT(user_.Texts("passed over"), IsEmpty());
  EXPECT_FALSE(manager_.ConvertReport(In("R/kreis.lst"), In("diff/3_4Rechnung"), ""));
  EXPECT_THAT(Entries()[0], HasSubstr("existiert nicht."));
}

}  // namespace
}  // namespace tessary
