// What can be told about writing before anything is written.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/failure.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"
#include "support/unprivileged.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

class WriteChecksTest : public testing::Test {
 protected:
  WriteChecksTest() {
    PutFile(folder_ / "a.lst", "a");
    fs::create_directory(folder_ / "sub");
  }
  // Both ask before and do it then; the answers must agree.
  std::int32_t Replacing(const std::string& name) {
    const std::string path = name.empty() ? name : folder_ / name;
    const auto changed = fs::last_write_time(folder_.path());
    const std::int32_t number = FailureNumber([&] { files_.CheckReplacing(path); });
    EXPECT_EQ(fs::last_write_time(folder_.path()), changed) << name;
    EXPECT_EQ(FailureNumber([&] { files_.OpenForReplacing(path); }), number) << name;
    return number;
  }
  std::int32_t Creating(const std::string& name) {
    const std::string path = folder_ / name;
    const std::int32_t number = FailureNumber([&] { files_.CheckCreatingFolder(path); });
    EXPECT_EQ(FailureNumber([&] { files_.CreateFolder(path); }), number) << name;
    return number;
  }

  FileSystem& files_ = SystemFiles();
  TemporaryFolder folder_;
};

TEST_F(WriteChecksTest, Replacing) {
  fs::create_symlink("a.lst", folder_ / "link");
  fs::create_symlink("none/a.lst", folder_ / "broken");
  PutFile(folder_ / "locked.lst", "");
  chmod((folder_ / "locked.lst").c_str(), 0444);
  EXPECT_EQ(Replacing("a.lst"), 0);
  EXPECT_EQ(Replacing("new.lst"), 0);
  EXPECT_EQ(Replacing("link"), 0);
  EXPECT_EQ(Replacing("locked.lst"), kPermissionDenied);
  EXPECT_EQ(Replacing("broken"), kPathNotFound);
  EXPECT_EQ(Replacing("none/a.lst"), kPathNotFound);
  EXPECT_EQ(Replacing("sub"), kPathFileAccess);
  EXPECT_EQ(Replacing(""), kBadFileName);
}

TEST_F(WriteChecksTest, CreatingFolders) {
  EXPECT_EQ(Creating("new"), 0);
  EXPECT_EQ(Creating("none/new"), kPathNotFound);
  EXPECT_NE(Creating("a.lst"), 0);
  EXPECT_NE(Creating("sub"), 0);
}

TEST_F(WriteChecksTest, AFolderThatTakesNothingNew) {
  TESSARY_RUN_UNPRIVILEGED();
  PutFile(folder_ / "sub/a.lst", "a");
  chmod((folder_ / "sub").c_str(), 0555);
  EXPECT_EQ(Replacing("sub/a.lst"), 0) << "it is overwritten in place";
  EXPECT_NE(Replacing("sub/new.lst"), 0);
  EXPECT_NE(Creating("sub/new"), 0);
  chmod((folder_ / "sub").c_str(), 0755);
}

TEST_F(WriteChecksTest, AllNamesOfAFileHaveItsIdentity) {
  fs::create_symlink("a.lst", folder_ / "link");
  fs::create_hard_link(folder_ / "a.lst", folder_ / "hard");
  PutFile(folder_ / "b.lst", "a");
  const auto identity = [&](const char* name) { return files_.IdentityOf(folder_ / name); };
  EXPECT_FALSE(identity("a.lst").empty());
  EXPECT_EQ(identity("link"), identity("a.lst"));
  EXPECT_EQ(identity("hard"), identity("a.lst"));
  EXPECT_NE(identity("b.lst"), identity("a.lst"));
  EXPECT_EQ(identity("sub"), "");
  EXPECT_EQ(identity("none"), "");
}

TEST_F(WriteChecksTest, AllNamesOfAFolderAreTheSameFolder) {
  fs::create_directory_symlink("sub", folder_ / "link");
  fs::create_directory(folder_ / "other");
  const auto same = [&](const char* a, const char* b) {
    return files_.SameFolder(folder_ / a, folder_ / b);
  };
  EXPECT_TRUE(same("sub", "sub/"));
  EXPECT_TRUE(same("sub", "link"));
  EXPECT_FALSE(same("sub", "other"));
  EXPECT_FALSE(same("sub", "none"));
  EXPECT_TRUE(same("none", "none"));
  fs::create_hard_link(folder_ / "a.lst", folder_ / "hard");
  EXPECT_FALSE(same("a.lst", "hard")) << "files";
}

}  // namespace
}  // namespace tessary
