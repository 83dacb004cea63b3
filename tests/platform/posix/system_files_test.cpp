#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <random>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/posix/file_replacement.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"

#if defined(__linux__)
#include <sys/xattr.h>
#endif

namespace tessary {
namespace {

namespace fs = std::filesystem;

mode_t ModeOf(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

ino_t InodeOf(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

std::size_t CountEntries(const std::string& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

class SystemFilesTest : public testing::Test {
 protected:
  FileSystem& files_ = SystemFiles();
  TemporaryFolder folder_;

  std::string Put(std::string_view name, std::string_view contents) {
    std::string path = folder_ / name;
    PutFile(path, contents);
    return path;
  }

  void Replace(const std::string& path, std::string_view contents) {
    const auto replacement = files_.OpenForReplacing(path);
    replacement->Write(contents);
    replacement->Commit();
    EXPECT_FALSE(replacement->Damaged());
  }

  std::string Read(const std::string& path) { return ReadWholeFile(*files_.OpenForReading(path)); }
};

TEST_F(SystemFilesTest, TellsFilesFromFolders) {
  const std::string file = Put("a", "");
  fs::create_directory(folder_ / "dir");
  fs::create_symlink("a", folder_ / "link");
  fs::create_symlink("dir", folder_ / "dirlink");
  fs::create_symlink("nowhere", folder_ / "dangling");
  fs::create_symlink("loop", folder_ / "loop");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const struct {
    std::string path;
    bool is_file;
    bool is_folder;
  } rows[] = {
      {file, true, false},
      {folder_ / "dir", false, true},
      {folder_ / "dir/", false, true},
      {folder_ / "a/", false, false},
      {folder_ / "link", true, false},
      {folder_ / "dirlink", false, true},
      {folder_ / "dangling", false, false},
      {folder_ / "loop", false, false},
      {folder_ / "pipe", true, false},
      {folder_ / "missing", false, false},
      {folder_ / std::string(300, 'x'), false, false},
      {std::string("/dev/null"), true, false},
      {file + std::string(1, '\0') + "x", false, false},
      {"", false, false},
      {"/", false, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(files_.FileExists(row.path), row.is_file) << row.path;
    EXPECT_EQ(files_.FolderExists(row.path), row.is_folder) << row.path;
  }
}

TEST_F(SystemFilesTest, ListsRegularFilesInOrder) {
  for (const char* const name : {"b.lst", "A.lst", "a.lst", ".hidden", "Ä", "\xFF\n"})
    Put(name, "");
  fs::create_directory(folder_ / "dir");
  fs::create_symlink("b.lst", folder_ / "link");
  fs::create_symlink("dir", folder_ / "dirlink");
  fs::create_symlink("nowhere", folder_ / "dangling");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const std::vector<std::string> names = {".hidden", "A.lst", "a.lst", "b.lst",
                                          "link",    "Ä",     "\xFF\n"};
  EXPECT_EQ(files_.ListFiles(folder_.path()), names);
  EXPECT_EQ(files_.ListFiles(folder_ / "dirlink").size(), 0u);
}

TEST_F(SystemFilesTest, ReadsInPieces) {
  const std::string contents = "0123456789";
  const auto reader = files_.OpenForReading(Put("a", contents));
  EXPECT_EQ(reader->SizeHint(), 10u);
  char buffer[4];
  EXPECT_EQ(reader->Read(buffer, 4), 4u);
  EXPECT_EQ(std::string(buffer, 4), "0123");
  EXPECT_EQ(reader->SizeHint(), 6u);
  EXPECT_EQ(ReadWholeFile(*reader), "456789");
  EXPECT_EQ(reader->SizeHint(), 0u);
  EXPECT_EQ(reader->Read(buffer, 4), 0u);
}

TEST_F(SystemFilesTest, ReadsEverySize) {
  for (const std::size_t size : {0u, 1u, 4095u, 4096u, 4097u, 1000003u}) {
    const std::string contents(size, '\xE4');
    EXPECT_EQ(Read(Put("a", contents)), contents) << size;
  }
}

TEST_F(SystemFilesTest, ReadsFilesThatTellNoSize) {
  if (!files_.FileExists("/proc/self/status")) GTEST_SKIP() << "no /proc on this system";
  EXPECT_NE(Read("/proc/self/status").find("Name:"), std::string::npos);
}

// Each row: what every opening of a bad path answers.
TEST_F(SystemFilesTest, RefusesBadPaths) {
  Put("a", "old");
  fs::create_directory(folder_ / "dir");
  fs::create_symlink("loop", folder_ / "loop");
  fs::create_symlink("dir", folder_ / "dirlink");
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  const struct {
    std::string path;
    std::int32_t reading;
    std::int32_t replacing;
  } rows[] = {
      {folder_ / "missing", kFileNotFound, 0},
      {folder_ / "missing/a", kPathNotFound, kPathNotFound},
      {folder_ / "missing/", kFileNotFound, kPathNotFound},
      {folder_ / "a/b", kPathNotFound, kPathNotFound},
      {folder_ / "a/", kPathNotFound, kPathNotFound},
      {folder_ / "dir", kPathFileAccess, kPathFileAccess},
      {folder_ / "dir/", kPathFileAccess, kPathFileAccess},
      {folder_ / "dir/.", kPathFileAccess, kPathFileAccess},
      {folder_ / "dir/..", kPathFileAccess, kPathFileAccess},
      {"/", kPathFileAccess, kPathFileAccess},
      {folder_ / "dirlink", kPathFileAccess, kPathFileAccess},
      {folder_ / "pipe", kPathFileAccess, kPathFileAccess},
      {std::string("/dev/null"), kPathFileAccess, kPathFileAccess},
      {folder_ / "loop", kBadFileName, kBadFileName},
      {folder_ / std::string(300, 'x'), kBadFileName, kBadFileName},
      {folder_ / std::string("a\0b", 3), kBadFileName, kBadFileName},
      {"", kBadFileName, kBadFileName},
  };
  const std::size_t entries = CountEntries(folder_.path());
  for (const auto& row : rows) {
    const auto& path = row.path;
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReading(path); }), row.reading) << path;
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), row.replacing) << path;
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(path, folder_ / "copy"); }), row.reading) << path;
    EXPECT_FALSE(files_.SameContents(path, folder_ / "a")) << path;
    EXPECT_FALSE(files_.SameContents(folder_ / "a", path)) << path;
    EXPECT_EQ(files_.ReadProfileString(path, "S", "K"), "") << path;
  }
  EXPECT_EQ(CountEntries(folder_.path()), entries);
}

TEST_F(SystemFilesTest, RefusesBadFolders) {
  Put("a", "");
  const struct {
    std::string path;
    std::int32_t listing;
    std::int32_t creating;
  } rows[] = {
      {folder_ / "missing/x", kPathNotFound, kPathNotFound},
      {folder_ / "a", kPathNotFound, kFileExists},
      {folder_ / "a/x", kPathNotFound, kPathNotFound},
      {folder_ / std::string(300, 'x'), kBadFileName, kBadFileName},
      {"", kBadFileName, kBadFileName},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureNumber([&] { files_.ListFiles(row.path); }), row.listing) << row.path;
    EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(row.path); }), row.creating) << row.path;
    EXPECT_NO_THROW(files_.RemoveLeftovers(row.path));
  }
}

TEST_F(SystemFilesTest, CreatesOneFolder) {
  files_.CreateFolder(folder_ / "new");
  files_.CreateFolder(folder_ / "other/");
  EXPECT_TRUE(files_.FolderExists(folder_ / "new"));
  EXPECT_TRUE(files_.FolderExists(folder_ / "other"));
  EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(folder_ / "new"); }), kFileExists);
}

TEST_F(SystemFilesTest, ReplacingKeepsPermissionsAndSwapsAtTheCommit) {
  const std::string path = Put("a.lst", "old contents");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  const ino_t inode = InodeOf(path);
  const auto replacement = files_.OpenForReplacing(path);
  replacement->Write("new");
  EXPECT_EQ(GetFile(path), "old contents");
  replacement->Write(" text");
  replacement->Commit();
  EXPECT_EQ(GetFile(path), "new text");
  EXPECT_EQ(ModeOf(path), 0640u);
  EXPECT_NE(InodeOf(path), inode);
  EXPECT_EQ(CountEntries(folder_.path()), 1u);
  EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kInvalidCall);
}

TEST_F(SystemFilesTest, ReplacingCreatesAMissingFileByTheUsersMask) {
  const mode_t mask = umask(027);
  Replace(folder_ / "new", "text");
  umask(mask);
  EXPECT_EQ(GetFile(folder_ / "new"), "text");
  EXPECT_EQ(ModeOf(folder_ / "new"), 0640u);
}

TEST_F(SystemFilesTest, ReplacingWithNothingEmptiesTheFile) {
  const std::string path = Put("a", "old");
  files_.OpenForReplacing(path)->Commit();
  EXPECT_EQ(GetFile(path), "");
}

TEST_F(SystemFilesTest, ReplacingWithoutCommitLeavesNothing) {
  const std::string path = Put("a", "old");
  for (const std::string& target : {path, folder_ / "new"}) {
    const auto replacement = files_.OpenForReplacing(target);
    replacement->Write(std::string(1'000'000, 'x'));
    EXPECT_EQ(CountEntries(folder_.path()), 2u);
    EXPECT_FALSE(replacement->Damaged());
  }
  EXPECT_EQ(GetFile(path), "old");
  EXPECT_EQ(CountEntries(folder_.path()), 1u);
}

TEST_F(SystemFilesTest, APreparedReplacementWaitsForItsCommit) {
  const std::string path = Put("a", "old");
  for (const std::string& target : {path, folder_ / "new"}) {
    const auto abandoned = files_.OpenForReplacing(target);
    abandoned->Write("abandoned");
    abandoned->Prepare();
  }
  EXPECT_EQ(GetFile(path), "old");
  EXPECT_EQ(CountEntries(folder_.path()), 1u);

  const auto replacement = files_.OpenForReplacing(path);
  replacement->Write("new");
  replacement->Prepare();
  EXPECT_EQ(GetFile(path), "old");
  replacement->Write(" text");
  replacement->Prepare();
  replacement->Prepare();
  replacement->Commit();
  EXPECT_EQ(GetFile(path), "new text");
  EXPECT_EQ(FailureNumber([&] { replacement->Prepare(); }), kInvalidCall);
  EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kInvalidCall);
}

TEST_F(SystemFilesTest, PreparingDoesNothingInPlace) {
  const std::string path = Put("a", "old");
  fs::create_hard_link(path, folder_ / "b");
  const auto replacement = files_.OpenForReplacing(path);
  replacement->Write("new");
  replacement->Prepare();
  EXPECT_EQ(GetFile(path), "old");
  replacement->Commit();
  EXPECT_EQ(GetFile(folder_ / "b"), "new");
}

TEST_F(SystemFilesTest, ReplacingTakesPiecesOfEverySize) {
  const std::string path = folder_ / "a";
  std::mt19937 random(7);
  for (const std::size_t largest : {3u, 5000u, 300'000u, 600'000u}) {
    std::string expected;
    const auto replacement = files_.OpenForReplacing(path);
    while (expected.size() < 700'000) {
      const std::string piece(random() % largest, static_cast<char>('a' + random() % 26));
      replacement->Write(piece);
      expected += piece;
    }
    replacement->Commit();
    EXPECT_TRUE(GetFile(path) == expected) << largest;
  }
}

TEST_F(SystemFilesTest, ReplacingFollowsLinks) {
  fs::create_directory(folder_ / "dir");
  Put("dir/a", "old");
  fs::create_symlink("dir/a", folder_ / "link");
  fs::create_symlink(folder_ / "link", folder_ / "second");
  Replace(folder_ / "second", "new");
  EXPECT_EQ(GetFile(folder_ / "dir/a"), "new");
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "second"));

  fs::create_symlink("dir/missing", folder_ / "dangling");
  Replace(folder_ / "dangling", "created");
  EXPECT_EQ(GetFile(folder_ / "dir/missing"), "created");
  EXPECT_TRUE(fs::is_symlink(folder_ / "dangling"));

  fs::create_symlink("nowhere/a", folder_ / "lost");
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(folder_ / "lost"); }), kPathNotFound);
}

TEST_F(SystemFilesTest, ReplacingAFileOfSeveralNamesWorksInPlace) {
  const std::string path = Put("a", "old contents");
  fs::create_hard_link(path, folder_ / "b");
  for (const std::string_view contents : {"new", "longer than the old contents", ""}) {
    const auto replacement = files_.OpenForReplacing(path);
    replacement->Write(contents);
    EXPECT_EQ(CountEntries(folder_.path()), 2u);
    replacement->Commit();
    EXPECT_FALSE(replacement->Damaged());
    EXPECT_EQ(GetFile(folder_ / "b"), contents);
    EXPECT_EQ(InodeOf(path), InodeOf(folder_ / "b"));
    EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kInvalidCall);
  }
}

TEST_F(SystemFilesTest, ReplacingAFileOfSeveralNamesWithoutCommitLeavesItAlone) {
  const std::string path = Put("a", "old");
  fs::create_hard_link(path, folder_ / "b");
  files_.OpenForReplacing(path)->Write("new");
  EXPECT_EQ(GetFile(path), "old");
}

TEST_F(SystemFilesTest, ReplacingRefusesReadOnlyFilesForEveryUser) {
  const std::string path = Put("a", "old");
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), kPermissionDenied);
  EXPECT_EQ(CountEntries(folder_.path()), 1u);
}

TEST_F(SystemFilesTest, ReplacingTakesNamesOfAnyBytesAndLength) {
  for (const std::string& name : {std::string("\xFF\xFE \n'\"*"), std::string(255, 'x'),
                                  std::string("Größe der Übersicht.lst"), std::string(" ")}) {
    Replace(folder_ / name, "first");
    Replace(folder_ / name, "second");
    EXPECT_EQ(GetFile(folder_ / name), "second");
  }
}

TEST_F(SystemFilesTest, ASecondReplacementIsRefusedWhileTheFirstLives) {
  const std::string path = Put("a", "old");
  {
    const auto first = files_.OpenForReplacing(path);
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), kPermissionDenied);
    files_.RemoveLeftovers(folder_.path());
    first->Write("first");
    first->Commit();
  }
  Replace(path, "second");
  EXPECT_EQ(GetFile(path), "second");
}

TEST_F(SystemFilesTest, ReplacingRemovesTheLeftoverOfADeadRun) {
  const std::string path = Put("a", "old");
  Put(TemporaryNameFor("a", 0), "half");
  Replace(path, "new");
  EXPECT_EQ(GetFile(path), "new");
  EXPECT_EQ(CountEntries(folder_.path()), 1u);
}

TEST_F(SystemFilesTest, ReplacingGoesRoundALeftoverThatCannotBeRemoved) {
  const std::string path = Put("a", "old");
  fs::create_directory(folder_ / TemporaryNameFor("a", 0));
  Replace(path, "new");
  EXPECT_EQ(GetFile(path), "new");
  EXPECT_EQ(CountEntries(folder_.path()), 2u);
}

TEST_F(SystemFilesTest, LeftoversAreRemoved) {
  Put(TemporaryNameFor("a", 0), "half");
  Put(TemporaryNameFor("b", 3), "");
  Put("~tessary-x.~tmp", "");
  Put("a.~tmp", "");
  fs::create_directory(folder_ / TemporaryNameFor("dir", 0));
  Put("kept", "");
  fs::create_symlink("kept", folder_ / TemporaryNameFor("link", 0));
  files_.RemoveLeftovers(folder_.path());
  EXPECT_EQ(CountEntries(folder_.path()), 5u);
  EXPECT_FALSE(files_.FileExists(folder_ / TemporaryNameFor("a", 0)));
  EXPECT_FALSE(files_.FileExists(folder_ / TemporaryNameFor("b", 3)));
  EXPECT_NO_THROW(files_.RemoveLeftovers(folder_ / "missing"));
}

#if defined(__linux__)

TEST_F(SystemFilesTest, ReplacingKeepsExtendedAttributes) {
  const std::string path = Put("a", "old");
  if (setxattr(path.c_str(), "user.note", "kept", 4, 0) != 0)
    GTEST_SKIP() << "NOT TESTED: no extended attributes in " << folder_.path();
  Replace(path, "new");
  char value[16];
  ASSERT_EQ(getxattr(path.c_str(), "user.note", value, sizeof value), 4);
  EXPECT_EQ(std::string(value, 4), "kept");
  EXPECT_EQ(GetFile(path), "new");
}

#endif

TEST_F(SystemFilesTest, ReplacingKeepsTheOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "NOT TESTED: only root can make a file somebody else's";
  const std::string path = Put("a", "old");
  ASSERT_EQ(chown(path.c_str(), 65534, 65533), 0);
  ASSERT_EQ(chmod(path.c_str(), 0600), 0);
  Replace(path, "new");
  struct stat status;
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 65534u);
  EXPECT_EQ(status.st_gid, 65533u);
  EXPECT_EQ(ModeOf(path), 0600u);
}

// Lets files grow only to a size, as a full disk would.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {size, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit before_;
};

// Number of the failure that ends a replacement by `size` bytes, and what it tells of the damage.
std::pair<std::int32_t, bool> ReplaceLimited(const std::string& path, std::size_t size) {
  const FileSizeLimit limit(50'000);
  const auto replacement = SystemFiles().OpenForReplacing(path);
  const auto number = FailureNumber([&] {
    replacement->Write(std::string(size, 'n'));
    replacement->Commit();
  });
  return {number, replacement->Damaged()};
}

TEST_F(SystemFilesTest, AFullDiskLeavesASafelyReplacedFileAlone) {
  const std::string old(1000, 'o');
  const std::string path = Put("a", old);
  for (const std::size_t size : {60'000u, 600'000u}) {
    EXPECT_EQ(ReplaceLimited(path, size), std::make_pair(std::int32_t{kDiskFull}, false));
    EXPECT_EQ(GetFile(path), old);
    EXPECT_EQ(CountEntries(folder_.path()), 1u);
  }
}

TEST_F(SystemFilesTest, NothingIsCommittedAfterAFailedWrite) {
  const std::string path = Put("a", "old");
  {
    const FileSizeLimit limit(50'000);
    const auto replacement = files_.OpenForReplacing(path);
    const auto write = [&] { replacement->Write(std::string(600'000, 'n')); };
    EXPECT_EQ(FailureNumber(write), kDiskFull);
    EXPECT_NE(FailureNumber([&] { replacement->Prepare(); }), 0);
    EXPECT_NE(FailureNumber([&] { replacement->Commit(); }), 0);
  }
  EXPECT_EQ(GetFile(path), "old");
}

TEST_F(SystemFilesTest, AFullDiskShowsBeforeAFileIsOverwrittenInPlace) {
  const std::string old(1000, 'o');
  const std::string path = Put("a", old);
  fs::create_hard_link(path, folder_ / "b");
  EXPECT_EQ(ReplaceLimited(path, 60'000), std::make_pair(std::int32_t{kDiskFull}, false));
  EXPECT_EQ(GetFile(path), old);
}

TEST_F(SystemFilesTest, AFailureHalfWayInPlaceDamagesTheFile) {
  const std::string path = Put("a", std::string(100'000, 'o'));
  fs::create_hard_link(path, folder_ / "b");
  EXPECT_EQ(ReplaceLimited(path, 80'000), std::make_pair(std::int32_t{kDiskFull}, true));
  EXPECT_EQ(GetFile(path), std::string(50'000, 'n') + std::string(50'000, 'o'));
}

TEST_F(SystemFilesTest, CopiesWholeFiles) {
  const std::string contents(200'001, '\xE4');
  const std::string from = Put("from", contents);
  ASSERT_EQ(chmod(from.c_str(), 0640), 0);
  const timespec times[2] = {{1'000'000'000, 0}, {1'100'000'000, 500}};
  ASSERT_EQ(utimensat(AT_FDCWD, from.c_str(), times, 0), 0);
  const mode_t mask = umask(0);
  files_.CopyFile(from, folder_ / "to");
  umask(mask);
  EXPECT_EQ(GetFile(folder_ / "to"), contents);
  struct stat status;
  ASSERT_EQ(stat((folder_ / "to").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  EXPECT_EQ(status.st_mtim.tv_sec, 1'100'000'000);
  EXPECT_EQ(status.st_mtim.tv_nsec, 500);
}

TEST_F(SystemFilesTest, CopyingOverAFileKeepsItsPermissions) {
  const std::string from = Put("from", "new");
  const std::string to = Put("to", "old and longer");
  ASSERT_EQ(chmod(to.c_str(), 0604), 0);
  files_.CopyFile(from, to);
  EXPECT_EQ(GetFile(to), "new");
  EXPECT_EQ(ModeOf(to), 0604u);
}

TEST_F(SystemFilesTest, TheCopyOfAReadOnlyFileCanBeReplaced) {
  const std::string from = Put("from", "text");
  ASSERT_EQ(chmod(from.c_str(), 0444), 0);
  files_.CopyFile(from, folder_ / "to");
  EXPECT_EQ(ModeOf(folder_ / "to"), 0644u);
  files_.CopyFile(from, folder_ / "to");
}

TEST_F(SystemFilesTest, CopyingOverAFileOfSeveralNamesKeepsThem) {
  const std::string from = Put("from", "new");
  const std::string to = Put("to", "old");
  fs::create_hard_link(to, folder_ / "other");
  files_.CopyFile(from, to);
  EXPECT_EQ(GetFile(folder_ / "other"), "new");
}

TEST_F(SystemFilesTest, CopyingOntoItselfFails) {
  const std::string path = Put("a", "text");
  fs::create_directory(folder_ / "dir");
  fs::create_hard_link(path, folder_ / "hard");
  fs::create_symlink("a", folder_ / "link");
  fs::create_directory_symlink(folder_.path(), folder_ / "same");
  for (const char* const other : {"a", "hard", "link", "same/a", "dir/../a"}) {
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(path, folder_ / other); }), kPermissionDenied);
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(folder_ / other, path); }), kPermissionDenied);
    EXPECT_EQ(GetFile(path), "text") << other;
  }
}

TEST_F(SystemFilesTest, CopyingToABadPathFails) {
  const std::string from = Put("from", "text");
  fs::create_directory(folder_ / "dir");
  const auto copy_to = [&](const std::string& to) {
    return FailureNumber([&] { files_.CopyFile(from, to); });
  };
  EXPECT_EQ(copy_to(folder_ / "dir"), kPathFileAccess);
  EXPECT_EQ(copy_to(folder_ / "missing/to"), kPathNotFound);
  EXPECT_EQ(copy_to(""), kBadFileName);
  EXPECT_EQ(CountEntries(folder_.path()), 2u);
}

TEST_F(SystemFilesTest, AFailedCopyLeavesTheTargetAlone) {
  const std::string from = Put("from", std::string(100'000, 'n'));
  const std::string to = Put("to", "old");
  {
    const FileSizeLimit limit(50'000);
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(from, to); }), kDiskFull);
    EXPECT_EQ(FailureNumber([&] { files_.CopyFile(from, folder_ / "new"); }), kDiskFull);
  }
  EXPECT_EQ(GetFile(to), "old");
  EXPECT_EQ(CountEntries(folder_.path()), 2u);
}

TEST_F(SystemFilesTest, AddsCopiesWithoutReplacingAnything) {
  const std::string from = Put("from", "text");
  EXPECT_TRUE(files_.AddCopy(from, folder_ / "new"));
  EXPECT_EQ(GetFile(folder_ / "new"), "text");
  EXPECT_TRUE(files_.AddCopy(from, Put("same", "text")));
  EXPECT_FALSE(files_.AddCopy(from, Put("other", "other")));
  EXPECT_EQ(GetFile(folder_ / "other"), "other");
  fs::create_directory(folder_ / "dir");
  EXPECT_FALSE(files_.AddCopy(from, folder_ / "dir"));
  EXPECT_EQ(FailureNumber([&] { files_.AddCopy(from, from); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files_.AddCopy(from, folder_ / "missing/to"); }), kPathNotFound);
  EXPECT_EQ(FailureNumber([&] { files_.AddCopy(folder_ / "missing", folder_ / "to"); }),
            kFileNotFound);
  EXPECT_EQ(CountEntries(folder_.path()), 5u);
}

TEST_F(SystemFilesTest, ANewFileDoesNotReplaceOneThatCameMeanwhile) {
  const std::string path = folder_ / "a";
  {
    const auto file = OpenNewFile(path);
    file->Write("mine");
    PutFile(path, "other");
    EXPECT_EQ(FailureNumber([&] { file->Commit(); }), kFileExists);
    EXPECT_FALSE(file->Damaged());
  }
  EXPECT_EQ(GetFile(path), "other");
  EXPECT_EQ(FailureNumber([&] { OpenNewFile(path); }), kFileExists);
  EXPECT_EQ(CountEntries(folder_.path()), 1u);
}

TEST_F(SystemFilesTest, ACopyIsAddedAtTheEndOfALink) {
  const std::string from = Put("from", "text");
  fs::create_symlink("target", folder_ / "link");
  EXPECT_TRUE(files_.AddCopy(from, folder_ / "link"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(GetFile(folder_ / "target"), "text");
}

TEST_F(SystemFilesTest, RenamesToFreeNamesOnly) {
  const std::string path = Put("a", "a");
  Put("taken", "taken");
  fs::create_directory(folder_ / "dir");
  fs::create_symlink("nowhere", folder_ / "dangling");
  const auto rename_to = [&](std::string_view name) {
    return FailureNumber([&] { files_.RenameFile(path, folder_ / name); });
  };
  EXPECT_EQ(rename_to("taken"), kFileExists);
  EXPECT_EQ(rename_to("dir"), kFileExists);
  EXPECT_EQ(rename_to("dangling"), kFileExists);
  EXPECT_EQ(rename_to("missing/a"), kPathNotFound);
  EXPECT_EQ(rename_to(std::string(300, 'x')), kBadFileName);
  EXPECT_EQ(GetFile(path), "a");
  EXPECT_EQ(GetFile(folder_ / "taken"), "taken");
  EXPECT_EQ(rename_to("b"), 0);
  EXPECT_EQ(GetFile(folder_ / "b"), "a");
  EXPECT_EQ(rename_to("c"), kFileNotFound);
  const auto rename_folder = [&] { files_.RenameFile(folder_ / "dir", folder_ / "other"); };
  EXPECT_EQ(FailureNumber(rename_folder), kPathFileAccess);
}

TEST_F(SystemFilesTest, ComparesContents) {
  const std::string long_text(200'000, 'x');
  const std::string a = Put("a", long_text);
  const struct {
    const char* name;
    std::string contents;
    bool same;
  } rows[] = {
      {"same", long_text, true},
      {"longer", long_text + "x", false},
      {"shorter", long_text.substr(1), false},
      {"last byte", long_text.substr(1) + "y", false},
      {"empty", "", false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(files_.SameContents(a, Put("b", row.contents)), row.same) << row.name;
  EXPECT_TRUE(files_.SameContents(a, a));
  EXPECT_TRUE(files_.SameContents(Put("c", ""), Put("d", "")));
}

TEST_F(SystemFilesTest, ReadsProfileStrings) {
  const std::string path = Put("a.lst",
                               "[UserSection]\r\nVersion=3\r\nReferenzbeleg=\xDC"
                               "bersicht\r\n");
  EXPECT_EQ(files_.ReadProfileString(path, "usersection", "version"), "3");
  EXPECT_EQ(files_.ReadProfileString(path, "UserSection", "Referenzbeleg"), "Übersicht");
  EXPECT_EQ(files_.ReadProfileString(path, "UserSection", "Other"), "");
}

TEST_F(SystemFilesTest, AFolderIsHeldByOneRunAtATime) {
  auto lock = files_.TryLockFolder(folder_.path());
  EXPECT_NE(lock, nullptr);
  EXPECT_EQ(files_.TryLockFolder(folder_.path()), nullptr);
  EXPECT_EQ(files_.TryLockFolder(folder_ / "."), nullptr) << "another name of the folder";
  lock.reset();
  EXPECT_NE(files_.TryLockFolder(folder_.path()), nullptr);
  EXPECT_TRUE(fs::is_empty(folder_.path()));
}

TEST_F(SystemFilesTest, WhatCannotBeLockedKeepsNobodyAway) {
  for (const std::string& path : {folder_ / "missing", std::string(), std::string("a\0b", 3)}) {
    const auto lock = files_.TryLockFolder(path);
    EXPECT_NE(lock, nullptr);
    EXPECT_NE(files_.TryLockFolder(path), nullptr);
  }
}

TEST_F(SystemFilesTest, ALockEndsWithItsProcess) {
  int held[2];
  ASSERT_EQ(pipe(held), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto lock = files_.TryLockFolder(folder_.path());
    const bool told = lock && write(held[1], "x", 1) == 1;
    while (told) pause();
    _exit(1);
  }
  char byte;
  EXPECT_EQ(read(held[0], &byte, 1), 1);
  EXPECT_EQ(files_.TryLockFolder(folder_.path()), nullptr);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_NE(files_.TryLockFolder(folder_.path()), nullptr);
  close(held[0]);
  close(held[1]);
}

int CountOpenDescriptors() {
  int count = 0;
  for (int fd = 0; fd < 256; ++fd) count += static_cast<int>(fcntl(fd, F_GETFD) != -1);
  return count;
}

TEST_F(SystemFilesTest, FailuresCloseWhatWasOpened) {
  const std::string path = Put("a", "text");
  fs::create_directory(folder_ / "dir");
  const int before = CountOpenDescriptors();
  FailureNumber([&] { files_.CopyFile(path, path); });
  FailureNumber([&] { files_.CopyFile(path, folder_ / "dir"); });
  FailureNumber([&] { files_.OpenForReading(folder_ / "dir"); });
  FailureNumber([&] { files_.ListFiles(path); });
  files_.SameContents(path, folder_ / "dir");
  ReplaceLimited(path, 100'000);
  files_.OpenForReplacing(path);
  EXPECT_EQ(CountOpenDescriptors(), before);
}

}  // namespace
}  // namespace tessary
