// Two runs that convert reports in one folder at once: the second waits for the first, and gives up
// before it has touched anything.

#include <gmock/gmock.h>

#include "platform/failure.h"
#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kMessage =
    " werden gerade Berichte von einem anderen Vorgang konvertiert.";

class FolderLockTest : public ManagerTest {
 protected:
  FolderLockTest() {
    memory_.Put(Path("v3", "A.lst"), SmallReport(3));
    memory_.Put(Path("v4", "A.lst"), SmallReport(4));
    memory_.PutFolder(Folder("diff"));
    EXPECT_TRUE(manager_.CreateDiffFile(Path("v3", "A.lst"), Path("v4", "A.lst"), Folder("diff")));
    memory_.Put(Path("R", "A.lst"), SmallReport(3));
    before_ = memory_.files();
  }

  bool ConvertFolder() { return hasty_.ConvertReports(Folder("diff"), Folder("R"), ""); }
  bool ConvertOne() {
    return hasty_.ConvertReport(Path("R", "A.lst"), Path("diff", "3_4Rechnung"), "");
  }
  std::string Message() const { return "Im Ordner " + Folder("R") + std::string(kMessage); }

  std::map<std::string, std::string> before_;
  ResultLog hasty_log_;
  BXConvertLLMgr hasty_{
      hasty_log_, {files_, user_, &loop_, &user_, nullptr, {3, std::chrono::milliseconds(0)}}};
};

TEST_F(FolderLockTest, AFolderRunThatFindsAnotherFailsWithError70) {
  const auto other_run = memory_.TryLockFolder(Folder("R"));
  EXPECT_FALSE(ConvertFolder());
  EXPECT_THAT(tessary::Entries(hasty_log_.errors),
              ElementsAre(ManagerEntry(kPermissionDenied, "ConvertReports", Message())));
  EXPECT_THAT(ItemsOf(hasty_log_.dictErrors),
              ElementsAre(testing::Pair(
                  "Konvertierung ist für alle Berichte in " + Folder("R") + " fehlgeschlagen.",
                  ElementsAre(Message()))));
  EXPECT_EQ(memory_.files(), before_);
  EXPECT_FALSE(memory_.FolderExists(Folder("RBak")));
  ExpectTidy();
}

TEST_F(FolderLockTest, SoDoesTheConversionOfOneReport) {
  const auto other_run = memory_.TryLockFolder(Folder("R"));
  EXPECT_FALSE(ConvertOne());
  EXPECT_THAT(tessary::Entries(hasty_log_.errors),
              ElementsAre(ManagerEntry(kPermissionDenied, "ConvertReport", Message())));
  EXPECT_EQ(memory_.files(), before_);
  ExpectTidy();
}

// Gives the folder free while the second run waits for it.
class ReleasingLoop : public MessageLoop {
 public:
  explicit ReleasingLoop(std::unique_ptr<FolderLock> lock) : lock_(std::move(lock)) {}
  void Yield() override { lock_.reset(); }

 private:
  std::unique_ptr<FolderLock> lock_;
};

TEST_F(FolderLockTest, TheSecondRunGoesOnWhenTheFirstHasFinished) {
  ReleasingLoop loop(memory_.TryLockFolder(Folder("R")));
  BXConvertLLMgr waiting(
      hasty_log_, {files_, user_, &loop, &user_, nullptr, {2, std::chrono::milliseconds(0)}});
  EXPECT_TRUE(waiting.ConvertReports(Folder("diff"), Folder("R"), ""));
  EXPECT_NE(memory_.Get(Path("R", "A.lst")), before_.at(Path("R", "A.lst")));
}

TEST_F(FolderLockTest, NoOperationKeepsTheFolder) {
  EXPECT_TRUE(ConvertFolder());
  EXPECT_TRUE(ConvertOne());
  files_.Reset();
  files_.FailCall(FileCall::kList, 1, kDeviceError);
  EXPECT_FALSE(ConvertFolder());
  EXPECT_NE(memory_.TryLockFolder(Folder("R")), nullptr);
}

TEST_F(FolderLockTest, AnotherFoldersRunIsNoHindrance) {
  const auto other_run = memory_.TryLockFolder(Folder("S"));
  EXPECT_TRUE(ConvertFolder());
}

// An empty folder stays empty for the check, whatever files of our own lie in it.
TEST_F(FolderLockTest, ServiceFilesAreNoInput) {
  memory_.Put(Path("leer", "~tessary-lock.~tmp"), "");
  memory_.Put(Path("leer", "~tessary-0123456789abcdef.~tmp"), SmallReport(3));
  memory_.Put(Path("leer", "~tessary-A.lst.~old"), SmallReport(3));
  EXPECT_THAT(memory_.ListFiles(Folder("leer")), IsEmpty());
  EXPECT_FALSE(manager_.CreateDiffFiles(Folder("leer"), Folder("v4"), Folder("diff")));
  EXPECT_THAT(Entries(), ElementsAre(ManagerEntry(kFolderEmpty, "CreateDiffFiles",
                                                  "Der Ordner " + Folder("leer") + " ist leer.")));
}

}  // namespace
}  // namespace tessary
