#include "platform/overlay_files.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/failing_files.h"
#include "support/failure_number.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using Names = std::vector<std::string>;

class OverlayFilesTest : public testing::Test {
 protected:
  OverlayFilesTest() {
    base_.Put("/rep/a.lst", "[UserSection]\nVersion=3\n");
    base_.Put("/rep/b.lst", "b");
  }
  // Whatever a test does, the files below stay as they are when the test is set up.
  void TearDown() override { EXPECT_EQ(base_.files(), before_); }
  void Keep() { before_ = base_.files(); }

  std::string Get(const std::string& path) { return ReadWholeFile(*files_.OpenForReading(path)); }
  void Write(const std::string& path, const std::string& contents) {
    const auto file = files_.OpenForReplacing(path);
    file->Write(contents);
    file->Commit();
    EXPECT_FALSE(file->Damaged());
  }

  MemoryFiles base_;
  std::map<std::string, std::string> before_;
  OverlayFiles files_{base_};
};

TEST_F(OverlayFilesTest, ShowsWhatIsBelow) {
  Keep();
  EXPECT_TRUE(files_.FileExists("/rep/a.lst"));
  EXPECT_TRUE(files_.FolderExists("/rep"));
  EXPECT_EQ(files_.ListFiles("/rep"), (Names{"a.lst", "b.lst"}));
  EXPECT_EQ(files_.ReadProfileString("/rep/a.lst", "UserSection", "Version"), "3");
  EXPECT_EQ(Get("/rep/b.lst"), "b");
}

TEST_F(OverlayFilesTest, AFileIsWrittenByItsCommit) {
  Keep();
  files_.OpenForReplacing("/rep/b.lst")->Write("lost");
  EXPECT_EQ(Get("/rep/b.lst"), "b");
  Write("/rep//a.lst", "[UserSection]\nVersion=4\n");
  EXPECT_EQ(files_.ReadProfileString("/rep/a.lst", "UserSection", "Version"), "4");
  Write("/rep/c.lst", "c");
  EXPECT_EQ(files_.ListFiles("/rep/"), (Names{"a.lst", "b.lst", "c.lst"}));
  const auto file = files_.OpenForReplacing("/rep/c.lst");
  file->Commit();
  EXPECT_EQ(FailureNumber([&] { file->Commit(); }), kInvalidCall);
}

TEST_F(OverlayFilesTest, AFolderCanBeCreatedAndFilled) {
  Keep();
  files_.CreateFolder("/repBak");
  EXPECT_TRUE(files_.FolderExists("/repBak/"));
  EXPECT_FALSE(base_.FolderExists("/repBak"));
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReading("/repBak/b.lst"); }), kFileNotFound);
  files_.CopyFile("/rep/b.lst", "/repBak/b.lst");
  EXPECT_EQ(files_.ListFiles("/repBak"), Names{"b.lst"});
  EXPECT_TRUE(files_.SameContents("/rep/b.lst", "/repBak/b.lst"));
  Write("/rep/b.lst", "new");
  EXPECT_FALSE(files_.SameContents("/rep/b.lst", "/repBak/b.lst"));
  EXPECT_EQ(Get("/repBak/b.lst"), "b");
  files_.CopyFile("/repBak/b.lst", "/rep/b.lst");
  EXPECT_EQ(Get("/rep/b.lst"), "b");
  files_.CreateFolder("/repBak/deeper");
  EXPECT_EQ(FailureNumber([&] { files_.CreateFolder("/repBak"); }), kFileExists);
  EXPECT_EQ(FailureNumber([&] { files_.CreateFolder("/none/x"); }), kPathNotFound);
}

TEST_F(OverlayFilesTest, ARenamedFileKeepsItsContents) {
  Keep();
  files_.RenameFile("/rep/b.lst", "/rep/~b.~1");
  EXPECT_FALSE(files_.FileExists("/rep/b.lst"));
  EXPECT_EQ(files_.ReadProfileString("/rep/b.lst", "UserSection", "Version"), "");
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReading("/rep/b.lst"); }), kFileNotFound);
  EXPECT_EQ(files_.ListFiles("/rep"), (Names{"a.lst", "~b.~1"}));
  Write("/rep/b.lst", "second");
  files_.RenameFile("/rep/b.lst", "/rep/~b.~2");
  Write("/rep/b.lst", "third");
  EXPECT_EQ(Get("/rep/~b.~1"), "b");
  EXPECT_EQ(Get("/rep/~b.~2"), "second");
  EXPECT_EQ(Get("/rep/b.lst"), "third");
  EXPECT_EQ(FailureNumber([&] { files_.RenameFile("/rep/b.lst", "/rep/a.lst"); }), kFileExists);
  EXPECT_EQ(FailureNumber([&] { files_.RenameFile("/rep/x", "/rep/y"); }), kFileNotFound);
}

TEST_F(OverlayFilesTest, AFileWrittenThroughALinkChangesUnderAllItsNames) {
  base_.PutLink("/rep/link.lst", "/rep/b.lst");
  Keep();
  Write("/rep/link.lst", "new");
  EXPECT_EQ(Get("/rep/b.lst"), "new");
  EXPECT_EQ(FailureNumber([&] { files_.CopyFile("/rep/b.lst", "/rep/link.lst"); }),
            kPermissionDenied);
}

TEST_F(OverlayFilesTest, FailsWhereTheFileSystemBelowWould) {
  base_.SetReadOnly("/rep/b.lst");
  Keep();
  const struct {
    const char* path;
    std::int32_t number;
  } rows[] = {{"/rep/b.lst", kPermissionDenied},
              {"/rep", kPathFileAccess},
              {"/none/x", kPathNotFound},
              {"", kBadFileName}};
  for (const auto& row : rows) {
    const auto open = [&] { files_.OpenForReplacing(row.path); };
    const auto copy = [&] { files_.CopyFile("/rep/a.lst", row.path); };
    EXPECT_EQ(FailureNumber(open), row.number) << row.path;
    EXPECT_EQ(FailureNumber(copy), row.number) << row.path;
  }
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReading("/none/x"); }), kPathNotFound);
  EXPECT_EQ(FailureNumber([&] { files_.OpenForReading("/rep"); }), kPathFileAccess);
  EXPECT_EQ(FailureNumber([&] { files_.ListFiles("/none"); }), kPathNotFound);
  EXPECT_FALSE(files_.SameContents("/rep/a.lst", "/none/x"));
}

TEST_F(OverlayFilesTest, AFileThatCannotBeReadCannotBeCopied) {
  FailingFiles failing(base_);
  OverlayFiles files(failing);
  Keep();
  failing.FailCall(FileCall::kRead, 1, kDeviceError);
  EXPECT_EQ(FailureNumber([&] { files.CopyFile("/rep/a.lst", "/rep/c.lst"); }), kDeviceError);
  EXPECT_FALSE(files.FileExists("/rep/c.lst"));
}

}  // namespace
}  // namespace tessary
