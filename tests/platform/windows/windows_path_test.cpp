#include <gtest/gtest.h>

#include <filesystem>

#include "platform/path.h"
#include "platform/path_syntax.h"
#include "support/temporary_folder.h"

namespace tessary {
namespace {

TEST(WindowsPathTest, Roots) {
  const struct {
    const char* path;
    const char* root;
  } rows[] = {
      {"", ""},
      {"a", ""},
      {"a\\b", ""},
      {"\\", "\\"},
      {"/a", "/"},
      {"C:", "C:"},
      {"C:a", "C:"},
      {"C:\\", "C:\\"},
      {"c:/a\\b", "c:/"},
      {"CC:\\a", ""},
      {"1:\\a", ""},
      {"\\\\", "\\"},
      {"\\\\server", "\\"},
      {"\\\\server\\", "\\"},
      {"\\\\server\\\\x", "\\"},
      {"\\\\server\\share", "\\\\server\\share"},
      {"\\\\server\\share\\", "\\\\server\\share\\"},
      {"//server/share/a", "//server/share/"},
      {"\\\\?\\C:\\a", "\\\\?\\C:\\"},
      {"\\\\?\\C:", "\\\\?\\C:"},
      {"\\\\?\\UNC\\server\\share\\a", "\\\\?\\UNC\\server\\share\\"},
      {"\\\\?\\unc\\server", "\\\\?\\unc\\"},
      {"\\\\?\\Volume{1}\\a", "\\\\?\\Volume{1}\\"},
      {"\\\\?\\", "\\\\?\\"},
      {"\\\\.\\NUL", "\\\\.\\NUL"},
      {"\\\\.\\C:\\a", "\\\\.\\C:\\"},
  };
  for (const auto& row : rows) {
    const std::string_view path = row.path;
    EXPECT_EQ(path.substr(0, PathRootLength(path)), row.root) << row.path;
  }
}

TEST(WindowsPathTest, Parts) {
  const struct {
    const char* path;
    const char* parent;
    const char* name;
  } rows[] = {
      {"C:\\a.lst", "C:\\", "a.lst"},
      {"C:\\dir\\a.lst", "C:\\dir", "a.lst"},
      {"C:/dir/a.lst", "C:/dir", "a.lst"},
      {"C:\\dir/", "C:\\", "dir"},
      {"C:\\", "", ""},
      {"C:a.lst", "C:", "a.lst"},
      {"\\\\server\\share\\a.lst", "\\\\server\\share\\", "a.lst"},
      {"\\\\server\\share\\dir\\a.lst", "\\\\server\\share\\dir", "a.lst"},
      {"\\\\server\\share", "", ""},
      {"\\\\?\\C:\\dir\\a.lst", "\\\\?\\C:\\dir", "a.lst"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ParentFolderOf(row.path), row.parent) << row.path;
    EXPECT_EQ(FileNameOf(row.path), row.name) << row.path;
  }
}

// Restores the current folder at the end.
class MakeAbsoluteTest : public testing::Test {
 protected:
  ~MakeAbsoluteTest() override { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

TEST_F(MakeAbsoluteTest, ResolvesByTheSystemsRules) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(LibraryPath(folder / "Größe"));
  std::filesystem::current_path(LibraryPath(folder / "Größe"));
  const std::string drive = folder.path().substr(0, 2);
  const struct {
    std::string path;
    std::string absolute;
  } rows[] = {
      {"", ""},
      {"a", folder / "Größe\\a"},
      {"a\\", folder / "Größe\\a\\"},
      {"a//", folder / "Größe\\a\\"},
      {"./a", folder / "Größe\\a"},
      {".", folder / "Größe"},
      {"..\\b/./Ω中文", folder / "b\\Ω中文"},
      {"missing\\..\\a", folder / "Größe\\a"},
      {drive + "a", folder / "Größe\\a"},
      {"\\a", drive + "\\a"},
      {"C:\\..\\a", "C:\\a"},
      {"c:/a/./b/../c/", "c:\\a\\c\\"},
      {"//server/share/a/../b", "\\\\server\\share\\b"},
      {"\\\\?\\C:\\a", "\\\\?\\C:\\a"},
  };
  for (const auto& row : rows) EXPECT_EQ(MakeAbsolute(row.path), row.absolute) << row.path;
}

}  // namespace
}  // namespace tessary
