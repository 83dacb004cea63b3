// What a power cut would leave, told from the order in which things reach the disk. A file system
// may bring to the disk in any order what nobody has flushed, so nothing may depend on it: no file
// takes the name of another before its contents are there, and no report changes before its copy,
// the copy's name and the name of the folder that holds it are.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <set>

#include "faults/posix/fault_world.h"
#include "faults/posix/system_calls.h"
#include "platform/path.h"

namespace tessary {
namespace {

using system_calls::Change;

// The disk as it is known to be: what has changed since it was last flushed.
class Disk {
 public:
  explicit Disk(const FaultWorld& world) : reports_(world.In("R")) {}

  void Take(const Change& change) {
    SCOPED_TRACE(change.path + " " + change.new_path);
    switch (change.kind) {
      case Change::kWritten:
        if (IsReport(change.path)) ExpectCopiesThere();
        unflushed_.insert(change.path);
        break;
      case Change::kFlushed:
        ++flushes_;
        unflushed_.erase(change.path);
        break;
      case Change::kRenamed:
        EXPECT_FALSE(unflushed_.contains(change.path)) << "named before it is on the disk";
        if (IsReport(change.new_path)) ExpectCopiesThere();
        unflushed_.insert(ParentFolderOf(change.new_path));
        break;
      case Change::kFolderMade:
        unflushed_.insert(ParentFolderOf(change.path));
        break;
    }
  }

  const std::set<std::string>& unflushed() const { return unflushed_; }
  int changed_reports() const { return changed_reports_; }
  int flushes() const { return flushes_; }

 private:
  bool IsReport(const std::string& path) const {
    return ParentFolderOf(path) == reports_ && !FileNameOf(path).starts_with("~");
  }

  void ExpectCopiesThere() {
    ++changed_reports_;
    for (const std::string& path : unflushed_) {
      const bool is_report_or_folder = path == reports_ || ParentFolderOf(path) == reports_;
      EXPECT_TRUE(is_report_or_folder) << "a report changes before this is on the disk: " << path;
    }
  }

  const std::string reports_;
  std::set<std::string> unflushed_;
  int changed_reports_ = 0;
  int flushes_ = 0;
};

Disk Play(const FaultWorld& world, const std::string& backup_folder, bool ahead) {
  ResultLog log;
  RecordingUser user;
  FaultManager manager(log, user, ahead);
  system_calls::Watch();
  const bool result = manager->ConvertReports(world.In("diff"), world.In("R"), backup_folder);
  system_calls::Stop();
  EXPECT_TRUE(result);
  Disk disk(world);
  for (const Change& change : system_calls::Changes()) disk.Take(change);
  EXPECT_GT(disk.changed_reports(), 2);
  EXPECT_TRUE(disk.unflushed().empty()) << *disk.unflushed().begin();
  return disk;
}

// With work done ahead, or all of it in its turn.
class FlushOrderTest : public testing::TestWithParam<bool> {};

TEST_P(FlushOrderTest, CopiesAreOnTheDiskBeforeReportsChange) {
  for (const bool in_place : {false, true}) {
    const FaultWorld world(in_place);
    Play(world, "", GetParam());
    world.ExpectFinished();
  }
}

TEST_P(FlushOrderTest, ANewBackupFolderIsOnTheDiskToo) {
  for (const bool in_place : {false, true}) {
    const FaultWorld world(in_place);
    Play(world, world.In("Sicherung"), GetParam());
  }
}

// A run that died may have left it in the system's memory only.
TEST_P(FlushOrderTest, ACopyThatIsThereAlreadyIsFlushedAgain) {
  const FaultWorld world(false);
  PutFile(world.In("RBak/A.lst"), world.Get("R/A.lst"));
  PutFile(world.In("RBak/B.lst"), world.Get("R/B.lst"));
  const Disk disk = Play(world, "", GetParam());
  constexpr int kCopies = 2;
  constexpr int kSteps = 3;
  EXPECT_EQ(disk.flushes(), 2 * kCopies + kSteps + 1)
      << "each file, the backup folder for each copy, the folder of the reports once";
}

TEST_P(FlushOrderTest, DifferenceFilesAreNamedOnceTheyAreOnTheDisk) {
  const FaultWorld world(false);
  ResultLog log;
  RecordingUser user;
  FaultManager manager(log, user, GetParam());
  system_calls::Watch();
  EXPECT_TRUE(manager->CreateDiffFiles(world.In("v3"), world.In("v4"), world.In("new")));
  system_calls::Stop();
  Disk disk(world);
  for (const Change& change : system_calls::Changes()) disk.Take(change);
  EXPECT_GT(disk.flushes(), 1);
}

// Whoever flushes the folder of the link later does not reach the one that the link leads to.
TEST(DeferredNameTest, OnlyANameBehindALinkIsFlushedAtOnce) {
  const FaultWorld world(false);
  const std::string folder = world.In("R");
  const std::string link = world.In("Verweis.lst");
  ASSERT_EQ(symlink((folder + "/A.lst").c_str(), link.c_str()), 0);
  for (const std::string& path : {folder + "/B.lst", link}) {
    system_calls::Watch();
    const auto replacement = SystemFiles().OpenForReplacing(path);
    replacement->Write("new");
    replacement->DeferName();
    replacement->Commit();
    system_calls::Stop();
    const auto changes = system_calls::Changes();
    const bool flushed = std::any_of(changes.begin(), changes.end(), [&](const Change& change) {
      return change.kind == Change::kFlushed && change.path == folder;
    });
    EXPECT_EQ(flushed, path == link) << path;
  }
}

INSTANTIATE_TEST_SUITE_P(WaysOfWorking, FlushOrderTest, testing::Bool(),
                         [](const auto& row) { return row.param ? "Ahead" : "InItsTurn"; });

}  // namespace
}  // namespace tessary
