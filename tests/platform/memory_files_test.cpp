#include "support/memory_files.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/path.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

std::string Path(std::string_view folder, std::string_view name) { return JoinPath(folder, name); }

class MemoryFilesTest : public testing::Test {
 protected:
  MemoryFilesTest() {
    files_.Put(a_, "old");
    files_.PutFolder(Path(root_, "sub"));
  }

  std::int32_t Replace(const std::string& path, std::string_view contents) {
    return FailureNumber([&] {
      const auto replacement = files_.OpenForReplacing(path);
      replacement->Write(contents);
      replacement->Commit();
    });
  }

  MemoryFiles files_;
  const std::string root_ = Path("", "root");
  const std::string a_ = Path(root_, "a");
};

TEST_F(MemoryFilesTest, TellsFilesFromFolders) {
  EXPECT_TRUE(files_.FileExists(a_));
  EXPECT_FALSE(files_.FolderExists(a_));
  EXPECT_TRUE(files_.FolderExists(root_));
  EXPECT_TRUE(files_.FolderExists(Path(root_, "")));
  EXPECT_FALSE(files_.FileExists(root_));
  EXPECT_FALSE(files_.FolderExists(""));
  EXPECT_TRUE(files_.FileExists(Path(Path(root_, ""), "a")));
  EXPECT_EQ(files_.Get(a_), "old");
}

TEST_F(MemoryFilesTest, ListsFilesInOrder) {
  files_.Put(Path(root_, "C"), "");
  files_.Put(Path(root_, "b"), "");
  files_.Put(Path(Path(root_, "sub"), "x"), "");
  files_.PutLink(Path(root_, "D"), a_);
  files_.PutLink(Path(root_, "dangling"), Path(root_, "nowhere"));
  EXPECT_EQ(files_.ListFiles(root_), (std::vector<std::string>{"a", "b", "C", "D"}));
  EXPECT_EQ(FailureNumber([&] { files_.ListFiles(a_); }), kPathNotFound);
  EXPECT_EQ(FailureNumber([&] { files_.ListFiles(Path(root_, "x")); }), kPathNotFound);
}

TEST_F(MemoryFilesTest, ReadsAndReplaces) {
  EXPECT_EQ(ReadWholeFile(*files_.OpenForReading(a_)), "old");
  EXPECT_EQ(Replace(a_, "new"), 0);
  EXPECT_EQ(files_.Get(a_), "new");
  EXPECT_EQ(Replace(Path(root_, "b"), "b"), 0);
  EXPECT_EQ(files_.Get(Path(root_, "b")), "b");
  files_.OpenForReplacing(a_)->Write("lost");
  EXPECT_EQ(files_.Get(a_), "new");
}

TEST_F(MemoryFilesTest, AnswersBadPathsLikeTheRealOne) {
  const struct {
    std::string path;
    std::int32_t reading;
    std::int32_t replacing;
  } rows[] = {
      {Path(root_, "missing"), kFileNotFound, 0},
      {Path(Path(root_, "x"), "a"), kPathNotFound, kPathNotFound},
      {root_, kPathFileAccess, kPathFileAccess},
      {"", kBadFileName, kBadFileName},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReading(row.path); }), row.reading) << row.path;
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(row.path); }), row.replacing) << row.path;
  }
  files_.SetReadOnly(a_);
  EXPECT_EQ(Replace(a_, "new"), kPermissionDenied);
  files_.SetReadOnly(a_, false);
  EXPECT_EQ(Replace(a_, "new"), 0);
}

TEST_F(MemoryFilesTest, CopiesRenamesAndCompares) {
  const std::string b = Path(root_, "b");
  files_.CopyFile(a_, b);
  EXPECT_TRUE(files_.SameContents(a_, b));
  EXPECT_EQ(FailureNumber([&] { files_.CopyFile(a_, a_); }), kPermissionDenied);
  EXPECT_EQ(FailureNumber([&] { files_.RenameFile(a_, b); }), kFileExists);
  files_.RenameFile(a_, Path(root_, "c"));
  EXPECT_FALSE(files_.FileExists(a_));
  EXPECT_FALSE(files_.SameContents(a_, b));
  EXPECT_EQ(FailureNumber([&] { files_.CopyFile(a_, b); }), kFileNotFound);
}

TEST_F(MemoryFilesTest, LinksStandForTheirTarget) {
  const std::string link = Path(root_, "link");
  files_.PutLink(link, a_);
  EXPECT_EQ(FailureNumber([&] { files_.CopyFile(a_, link); }), kPermissionDenied);
  EXPECT_EQ(Replace(link, "new"), 0);
  EXPECT_EQ(files_.Get(a_), "new");
}

TEST_F(MemoryFilesTest, CreatesFolders) {
  const std::string folder = Path(root_, "new");
  files_.CreateFolder(folder);
  EXPECT_TRUE(files_.FolderExists(folder));
  EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(folder); }), kFileExists);
  EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(a_); }), kFileExists);
  EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(Path(Path(root_, "x"), "y")); }),
            kPathNotFound);
}

TEST_F(MemoryFilesTest, AFullDiskDamagesOnlyInPlace) {
  files_.SetCapacity(8);
  EXPECT_EQ(Replace(a_, "sixsix"), kDiskFull);
  EXPECT_EQ(files_.Get(a_), "old");
  files_.SetInPlace(a_);
  EXPECT_EQ(Replace(a_, "sixsix"), 0);
  const auto replacement = files_.OpenForReplacing(a_);
  replacement->Write("0123456789");
  EXPECT_EQ(FailureNumber([&] { replacement->Commit(); }), kDiskFull);
  EXPECT_TRUE(replacement->Damaged());
  EXPECT_EQ(files_.Get(a_), "01234567");
}

TEST_F(MemoryFilesTest, RemovesLeftovers) {
  files_.Put(Path(root_, "~tessary-0123456789abcdef.~tmp"), "");
  files_.Put(Path(Path(root_, "sub"), "~tessary-0123456789abcdef.~tmp"), "");
  files_.RemoveLeftovers(root_);
  EXPECT_EQ(files_.files().size(), 2u);
}

TEST_F(MemoryFilesTest, ReadsProfileStrings) {
  files_.Put(a_, "[S]\r\nK=\xFC\r\n");
  EXPECT_EQ(files_.ReadProfileString(a_, "s", "k"), "ü");
  EXPECT_EQ(files_.ReadProfileString(root_, "s", "k"), "");
}

}  // namespace
}  // namespace tessary
