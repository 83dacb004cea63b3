#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "platform/failure.h"
#include "platform/path.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

// Restores the current folder at the end.
class MakeAbsoluteTest : public testing::Test {
 protected:
  ~MakeAbsoluteTest() override { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(MakeAbsoluteTest, ResolvesByText) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "in");
  std::filesystem::current_path(folder / "in");
  const struct {
    std::string path;
    std::string absolute;
  } rows[] = {
      {"", ""},
      {"a", folder / "in/a"},
      {"a/", folder / "in/a/"},
      {"a//", folder / "in/a/"},
      {"./a", folder / "in/a"},
      {".", folder / "in"},
      {"./", folder / "in/"},
      {"..", folder.path()},
      {"../", folder / ""},
      {"../b/./c", folder / "b/c"},
      {"missing/../a", folder / "in/a"},
      {"a/..", folder / "in"},
      {"a/...", folder / "in/a/..."},
      {"../../../../../../../../../../x", "/x"},
      {"/", "/"},
      {"//", "/"},
      {"/..", "/"},
      {"/../", "/"},
      {"/a/../", "/"},
      {"/a//b/", "/a/b/"},
      {"/a/./b/../c", "/a/c"},
      {" a ", folder / "in/ a "},
      {"Größe", folder / "in/Größe"},
      {"\xFF", folder / "in/\xFF"},
  };
  for (const auto& row : rows) EXPECT_EQ(MakeAbsolute(row.path), row.absolute) << row.path;
}

TEST_F(MakeAbsoluteTest, FailsInARemovedFolder) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "in");
  std::filesystem::current_path(folder / "in");
  std::filesystem::remove(folder / "in");
  EXPECT_EQ(FailureNumber([] { MakeAbsolute("a"); }), kPathNotFound);
  EXPECT_EQ(MakeAbsolute("/a"), "/a");
  EXPECT_EQ(MakeAbsolute(""), "");
}

TEST_F(MakeAbsoluteTest, TakesDeepFolders) {
  const TemporaryFolder folder;
  std::string deep = folder.path();
  for (int i = 0; i < 10; ++i) deep = JoinPath(deep, std::string(100, 'x'));
  std::filesystem::create_directories(deep);
  std::filesystem::current_path(deep);
  EXPECT_EQ(MakeAbsolute("a"), JoinPath(deep, "a"));
}

}  // namespace
}  // namespace tessary
