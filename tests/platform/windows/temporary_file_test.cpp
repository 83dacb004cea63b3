#include "platform/windows/temporary_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/file_system.h"
#include "platform/windows/native_path.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

TEST(BackupNameTest, TellsTheFilesName) {
  for (const std::string name :
       {"a", "Rechnung.lst", "3_4Rechnung", "Größe Ω中文.lst", "~x.~old"}) {
    const auto backup = BackupNameFor(name);
    ASSERT_TRUE(backup) << name;
    EXPECT_EQ(NameOfBackup(*backup), name);
    EXPECT_FALSE(IsTemporaryName(*backup));
  }
}

TEST(BackupNameTest, IsNoInputForAnyRule) {
  EXPECT_EQ(BackupNameFor("3_4Rechnung"), "~tessary-3_4Rechnung.~old");
}

TEST(BackupNameTest, FitsIntoAName) {
  EXPECT_TRUE(BackupNameFor(std::string(241, 'x')));
  EXPECT_FALSE(BackupNameFor(std::string(242, 'x')));
  std::string umlauts;
  for (int i = 0; i < 241; ++i) umlauts += "ä";
  EXPECT_TRUE(BackupNameFor(umlauts));
}

TEST(BackupNameTest, OtherNamesAreNone) {
  for (const char* const name :
       {"", "a.lst", "~tessary-.~old", "~tessary-a.~tmp", "tessary-a.~old", "~tessary-a.~old.lst"})
    EXPECT_FALSE(NameOfBackup(name)) << name;
  EXPECT_FALSE(NameOfBackup(TemporaryNameFor("a", 0)));
}

// What a run that was ended in the midst of a replacement leaves behind.
class DeadRunTest : public testing::Test {
 protected:
  FileSystem& files_ = SystemFiles();
  TemporaryFolder folder_;
  const std::string report_ = folder_ / "Größe.lst";
  const std::string backup_ = folder_ / "~tessary-Größe.lst.~old";

  std::vector<std::string> Names() { return FileNamesIn(folder_.path()); }
};

TEST_F(DeadRunTest, ABackupOfAMissingFileGetsItsNameBack) {
  PutFile(backup_, "old");
  PutFile(folder_ / TemporaryNameFor("Größe.lst", 0), "new");
  files_.RemoveLeftovers(folder_.path());
  EXPECT_EQ(Names(), std::vector<std::string>{"Größe.lst"});
  EXPECT_EQ(GetFile(report_), "old");
}

TEST_F(DeadRunTest, ABackupOfAReplacedFileIsRemoved) {
  PutFile(backup_, "old");
  PutFile(report_, "new");
  files_.RemoveLeftovers(folder_.path());
  EXPECT_EQ(Names(), std::vector<std::string>{"Größe.lst"});
  EXPECT_EQ(GetFile(report_), "new");
}

TEST_F(DeadRunTest, ABackupStaysWhereAFolderHasTakenTheName) {
  PutFile(backup_, "old");
  std::filesystem::create_directory(LibraryPath(report_));
  files_.RemoveLeftovers(folder_.path());
  EXPECT_EQ(GetFile(backup_), "old");
}

TEST_F(DeadRunTest, TheNextReplacementFindsTheOldContents) {
  PutFile(backup_, "old");
  const auto replacement = files_.OpenForReplacing(report_);
  EXPECT_EQ(GetFile(report_), "old");
  replacement->Write("new");
  replacement->Commit();
  EXPECT_EQ(GetFile(report_), "new");
  EXPECT_EQ(Names(), std::vector<std::string>{"Größe.lst"});
}

TEST_F(DeadRunTest, ReplacingRemovesTheLeftovers) {
  PutFile(report_, "old");
  PutFile(backup_, "older");
  PutFile(folder_ / TemporaryNameFor("Größe.lst", 0), "half");
  const auto replacement = files_.OpenForReplacing(report_);
  replacement->Write("new");
  replacement->Commit();
  EXPECT_EQ(GetFile(report_), "new");
  EXPECT_EQ(Names(), std::vector<std::string>{"Größe.lst"});
}

TEST_F(DeadRunTest, OnlyLeftoversAreRemoved) {
  PutFile(folder_ / TemporaryNameFor("a", 0), "");
  PutFile(folder_ / TemporaryNameFor("b", 7), "");
  PutFile(folder_ / "a.~tmp", "");
  PutFile(folder_ / "~tessary-x.~tmp", "");
  std::filesystem::create_directory(LibraryPath(folder_ / TemporaryNameFor("dir", 0)));
  files_.RemoveLeftovers(folder_.path());
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.~tmp", "~tessary-x.~tmp"}));
  EXPECT_TRUE(files_.FolderExists(folder_ / TemporaryNameFor("dir", 0)));
  EXPECT_NO_THROW(files_.RemoveLeftovers(folder_ / "missing"));
  EXPECT_NO_THROW(files_.RemoveLeftovers(""));
}

}  // namespace
}  // namespace tessary
