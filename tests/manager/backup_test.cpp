#include "manager/backup.h"

#include <gmock/gmock.h>

#include "manager/file_lists.h"
#include "platform/path.h"
#include "support/failure_number.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BackupTest : public ManagerTest {
 protected:
  BackupTest() { memory_.Put(Path("Berichte", "A.lst"), "new"); }

  Answer Save() { return BackupReport(around_, Folder("Bak"), Folder("Berichte"), "A.lst"); }

  Surroundings around_{files_, user_, nullptr, &user_};
};

TEST_F(BackupTest, TheDefaultFolderIsASiblingOfTheReports) {
  EXPECT_EQ(DefaultBackupFolder(Folder("Berichte")), Folder("BerichteBak"));
  EXPECT_EQ(DefaultBackupFolder(JoinPath(Folder("Berichte"), "")), Folder("BerichteBak"));
  EXPECT_EQ(DefaultBackupFolder(JoinPath(JoinPath(Folder("Berichte"), ""), "")),
            JoinPath(Folder("Berichte"), "Bak"))
      << "one trailing separator is removed";
  const std::string root(1, kPathSeparator);
  EXPECT_EQ(DefaultBackupFolder(root), root + "Bak") << "a root keeps its separator";
}

TEST_F(BackupTest, TheFolderIsMadeOneLevelDeepOnly) {
  user_.AnswerAlways(Answer::kYes);
  const struct {
    const char* what;
    std::string wanted;
    std::string path;
    bool skip;
  } rows[] = {
      {"default", "", Folder("BerichteBak"), false},
      {"blank", "  ", Folder("BerichteBak"), false},
      {"exists", Folder("Berichte"), Folder("Berichte"), false},
      {"trimmed", "  " + Folder("Neu") + " ", Folder("Neu"), false},
      {"parent exists", Path("Neu", "tiefer"), Path("Neu", "tiefer"), false},
      {"parent missing", Path("fehlt", "tiefer"), Path("fehlt", "tiefer"), true},
      {"a file", Path("Berichte", "A.lst"), Path("Berichte", "A.lst"), true},
  };
  for (const auto& row : rows) {
    const BackupFolder folder = CreateBackupFolder(around_, Folder("Berichte"), row.wanted);
    EXPECT_EQ(folder.path, row.path) << row.what;
    EXPECT_EQ(folder.skip, row.skip) << row.what;
    EXPECT_EQ(folder.answer, Answer::kYes) << row.what;
    EXPECT_EQ(memory_.FolderExists(row.path), !row.skip) << row.what;
  }
  EXPECT_EQ(user_.Questions().size(), 2u);
  EXPECT_FALSE(memory_.FolderExists(Folder("fehlt")));
}

TEST_F(BackupTest, AFolderThatDoesNotAppearIsAskedAbout) {
  class LostFolders : public MemoryFiles {
   public:
    void CreateFolder(const std::string&) override {}
  } lost;
  user_.AnswerNext(Answer::kNo);
  const BackupFolder folder = CreateBackupFolder({lost, user_}, Folder("Berichte"), "");
  EXPECT_TRUE(folder.skip);
  EXPECT_EQ(folder.answer, Answer::kNo);
}

TEST_F(BackupTest, ANewCopyReplacesNoOtherContents) {
  memory_.Put(Path("Bak", "A.lst"), "old");
  memory_.Put(Path("Bak", "~A.lst.~1"), "older");
  EXPECT_EQ(Save(), Answer::kYes);
  EXPECT_EQ(memory_.Get(Path("Bak", "A.lst")), "new");
  EXPECT_EQ(memory_.Get(Path("Bak", "~A.lst.~1")), "older");
  EXPECT_EQ(memory_.Get(Path("Bak", "~A.lst.~2")), "old");
  EXPECT_EQ(user_.Warnings().size(), 1u);
  EXPECT_EQ(Save(), Answer::kYes);
  EXPECT_EQ(user_.Warnings().size(), 1u);
  EXPECT_EQ(memory_.ListFiles(Folder("Bak")).size(), 3u);
}

TEST_F(BackupTest, WhatAnotherRunSavesHereMeanwhileIsKept) {
  memory_.Put(Path("Bak", "A.lst"), "old");
  files_.BeforeCall([&](const FailingFiles::Call& call) {
    const int attempt = files_.CountCalls(FileCall::kCopy);
    if (call.kind == FileCall::kCopy && (attempt == 2 || attempt == 3))
      memory_.Put(Path("Bak", "A.lst"), "other " + std::to_string(attempt));
  });
  EXPECT_EQ(Save(), Answer::kYes);
  EXPECT_EQ(memory_.Get(Path("Bak", "A.lst")), "new");
  EXPECT_EQ(memory_.Get(Path("Bak", "~A.lst.~1")), "old");
  EXPECT_EQ(memory_.Get(Path("Bak", "~A.lst.~2")), "other 2");
  EXPECT_EQ(memory_.Get(Path("Bak", "~A.lst.~3")), "other 3");
  EXPECT_EQ(user_.Warnings().size(), 3u);
}

TEST_F(BackupTest, WithoutEndKeptFromSavingItAsks) {
  files_.BeforeCall([&](const FailingFiles::Call& call) {
    if (call.kind == FileCall::kCopy)
      memory_.Put(Path("Bak", "A.lst"), std::to_string(files_.CountCalls(FileCall::kCopy)));
  });
  user_.AnswerNext(Answer::kNo);
  EXPECT_EQ(Save(), Answer::kNo);
  EXPECT_EQ(memory_.Get(Path("Berichte", "A.lst")), "new");
}

TEST_F(BackupTest, KeptCopiesAreNoReportsAndNoDifferenceFiles) {
  memory_.Put(Path("Bak", "3_4A.lst"), SmallReport(3));
  memory_.Put(Path("Berichte", "3_4A.lst"), SmallReport(4));
  EXPECT_EQ(BackupReport(around_, Folder("Bak"), Folder("Berichte"), "3_4A.lst"), Answer::kYes);
  const auto names = [&](ListKind kind) {
    std::vector<std::string> result;
    const auto files = CreateFileArraysForConversion(around_, *log_.errors.objErrors, kind,
                                                     Folder("Bak"), nullptr);
    for (const ListedFile& file : files) result.push_back(file.name);
    return result;
  };
  EXPECT_THAT(names(ListKind::kReports), ElementsAre("3_4A.lst"));
  EXPECT_THAT(names(ListKind::kDifferenceFiles), ElementsAre("3_4A.lst"));
}

// Whatever call fails, the older copy is still there, under one name or the other.
TEST_F(BackupTest, NoFailureLosesAnOlderCopy) {
  const std::pair<FileCall, int> calls[] = {{FileCall::kSameContents, 1},
                                            {FileCall::kRename, 1},
                                            {FileCall::kCopy, 1},
                                            {FileCall::kCopy, 2}};
  for (const auto& [call, n] : calls) {
    files_.Reset();
    memory_.Put(Path("Bak", "A.lst"), "old");
    files_.FailCall(call, n, kDeviceError);
    user_.AnswerNext(Answer::kNo);
    EXPECT_EQ(Save(), Answer::kNo);
    EXPECT_EQ(memory_.Get(Path("Bak", "A.lst")), "old");
    EXPECT_EQ(memory_.ListFiles(Folder("Bak")).size(), 1u);
  }
  files_.Reset();
  files_.FailCall(FileCall::kCopy, 2, kDeviceError);
  files_.FailCall(FileCall::kRename, 2, kDeviceError);
  user_.AnswerNext(Answer::kYes);
  EXPECT_EQ(Save(), Answer::kYes);
  EXPECT_EQ(memory_.Get(Path("Bak", "~A.lst.~1")), "old");
  EXPECT_EQ(memory_.Get(Path("Berichte", "A.lst")), "new");
}

TEST_F(BackupTest, AMissingFolderOfAListAddsItsEntry) {
  const std::string folder = Folder("fehlt");
  EXPECT_EQ(FailureNumber([&] {
              CreateFileArraysForConversion(around_, *log_.errors.objErrors, ListKind::kReports,
                                            folder, nullptr);
            }),
            kFolderEmpty)
      << "the number of an empty folder, on purpose";
  EXPECT_THAT(Entries(),
              ElementsAre(ManagerEntry(kFolderEmpty, "CreateFileArraysForConversion",
                                       "Das Verzeichnis " + folder + " existiert nicht.")));
}

TEST_F(BackupTest, ListsCarryReferenceAndVersions) {
  memory_.Put(Path("L", "b.lst"), SmallReport(3, " RECHNUNG für Öl "));
  memory_.Put(Path("L", "A.lst"), SmallReport(7, "Angebot"));
  memory_.Put(Path("L", "3_4Übersicht"), "");
  memory_.Put(Path("L", "4_3Rechnung"), "");
  const auto list = [&](ListKind kind, const OmitReport& omit = nullptr) {
    std::vector<std::string> rows;
    for (const ListedFile& file :
         CreateFileArraysForConversion(around_, *log_.errors.objErrors, kind, Folder("L"), omit)) {
      EXPECT_EQ(file.path, Path("L", file.name));
      rows.push_back(file.name + "|" + file.reference + "|" + std::to_string(file.version) + "|" +
                     std::to_string(file.new_version));
    }
    return rows;
  };
  EXPECT_THAT(list(ListKind::kReports),
              ElementsAre("A.lst|angebot|7|0", "b.lst|rechnung für öl|3|0"));
  EXPECT_THAT(user_.Texts("passed over"),
              ElementsAre(Path("L", "3_4Übersicht"), Path("L", "4_3Rechnung")));
  user_.Clear();
  const OmitReport omit_all = [](const std::string&) { return true; };
  EXPECT_THAT(list(ListKind::kReports, omit_all), IsEmpty());
  EXPECT_THAT(user_.events(), IsEmpty()) << "an omitted file is not passed over";
  EXPECT_THAT(list(ListKind::kDifferenceFiles, omit_all), ElementsAre("3_4Übersicht|übersicht|3|4"))
      << "difference files are never omitted";
}

}  // namespace
}  // namespace tessary
