// What the rights of a user without privileges let the file system do.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/failure.h"
#include "platform/file_system.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"
#include "support/unprivileged.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

void SetMode(const std::string& path, mode_t mode) { ASSERT_EQ(chmod(path.c_str(), mode), 0); }

TEST(RightsTest, AnUnreadableFileCannotBeRead) {
  TESSARY_RUN_UNPRIVILEGED();
  const TemporaryFolder folder;
  const std::string path = folder / "a";
  PutFile(path, "[S]\nK=1\n");
  SetMode(path, 0200);
  FileSystem& files = SystemFiles();
  EXPECT_TRUE(files.FileExists(path));
  EXPECT_EQ(FailureNumber([&] { files.OpenForReading(path); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files.CopyFile(path, folder / "b"); }), kPermissionDenied);
  EXPECT_EQ(files.ReadProfileString(path, "S", "K"), "");
  EXPECT_FALSE(files.SameContents(path, path));
}

TEST(RightsTest, AReadOnlyFileIsNotReplaced) {
  TESSARY_RUN_UNPRIVILEGED();
  const TemporaryFolder folder;
  const std::string path = folder / "a";
  PutFile(path, "old");
  SetMode(path, 0444);
  EXPECT_EQ(FailureNumber([&] { SystemFiles().OpenForReplacing(path); }), kPermissionDenied);
  // Writable, but not for its owner.
  SetMode(path, 0466);
  EXPECT_EQ(FailureNumber([&] { SystemFiles().OpenForReplacing(path); }), kPermissionDenied);
  EXPECT_EQ(GetFile(path), "old");
}

TEST(RightsTest, AFileInAClosedFolderIsReplacedInPlace) {
  TESSARY_RUN_UNPRIVILEGED();
  const TemporaryFolder folder;
  fs::create_directory(folder / "dir");
  const std::string path = folder / "dir/a";
  PutFile(path, "old contents");
  SetMode(folder / "dir", 0555);
  struct stat before;
  struct stat after;
  ASSERT_EQ(stat(path.c_str(), &before), 0);
  const auto replacement = SystemFiles().OpenForReplacing(path);
  replacement->Write("new");
  replacement->Commit();
  ASSERT_EQ(stat(path.c_str(), &after), 0);
  EXPECT_EQ(GetFile(path), "new");
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST(RightsTest, NothingIsCreatedInAClosedFolder) {
  TESSARY_RUN_UNPRIVILEGED();
  const TemporaryFolder folder;
  fs::create_directory(folder / "dir");
  PutFile(folder / "a", "text");
  PutFile(folder / "dir/b", "text");
  SetMode(folder / "dir", 0555);
  FileSystem& files = SystemFiles();
  const std::string path = folder / "dir/new";
  EXPECT_EQ(FailureNumber([&] { files.OpenForReplacing(path); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files.CopyFile(folder / "a", path); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files.CreateFolder(path); }), kPermissionDenied);
  const auto rename = [&] { files.RenameFile(folder / "dir/b", path); };
  EXPECT_EQ(FailureNumber(rename), kPermissionDenied);
  EXPECT_FALSE(files.FileExists(path));
}

TEST(RightsTest, AnUnreadableFolderIsNotListed) {
  TESSARY_RUN_UNPRIVILEGED();
  const TemporaryFolder folder;
  fs::create_directory(folder / "dir");
  PutFile(folder / "dir/a", "old");
  FileSystem& files = SystemFiles();
  SetMode(folder / "dir", 0300);
  EXPECT_EQ(FailureNumber([&] { files.ListFiles(folder / "dir"); }), kPermissionDenied);
  EXPECT_NO_THROW(files.RemoveLeftovers(folder / "dir"));
  // Its files can still be replaced.
  const auto replacement = files.OpenForReplacing(folder / "dir/a");
  replacement->Write("new");
  replacement->Commit();
  EXPECT_EQ(GetFile(folder / "dir/a"), "new");
  SetMode(folder / "dir", 0000);
  EXPECT_FALSE(files.FileExists(folder / "dir/a"));
  const auto open = [&] { files.OpenForReading(folder / "dir/a"); };
  EXPECT_EQ(FailureNumber(open), kPermissionDenied);
}

// Somebody else's file that everybody may write: a new file in its place would be ours.
TEST(RightsTest, AFileThatCannotBeGivenBackIsReplacedInPlace) {
  if (geteuid() != 0) GTEST_SKIP() << "NOT TESTED: only root can make a file somebody else's";
  const TemporaryFolder folder;
  const std::string path = folder / "a";
  PutFile(path, "old");
  SetMode(path, 0666);
  SetMode(folder.path(), 0777);
  struct stat before;
  struct stat after;
  ASSERT_EQ(stat(path.c_str(), &before), 0);
  ASSERT_EQ(seteuid(65534), 0);
  std::int32_t number = FailureNumber([&] {
    const auto replacement = SystemFiles().OpenForReplacing(path);
    replacement->Write("new");
    replacement->Commit();
  });
  ASSERT_EQ(seteuid(0), 0);
  ASSERT_EQ(stat(path.c_str(), &after), 0);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(GetFile(path), "new");
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(before.st_uid, after.st_uid);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

}  // namespace
}  // namespace tessary
