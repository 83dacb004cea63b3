#include "platform/path.h"

#include <gtest/gtest.h>

namespace tessary {
namespace {

// Writes "/" as the system's separator, for rows that hold on every system.
std::string Path(std::string path) {
  for (char& c : path) {
    if (c == '/') c = kPathSeparator;
  }
  return path;
}

TEST(PathTest, Parts) {
  const struct {
    std::string path;
    std::string parent;
    std::string name;
    std::string base;
    std::string extension;
  } rows[] = {
      {"", "", "", "", ""},
      {"a", "", "a", "a", ""},
      {"a.lst", "", "a.lst", "a", "lst"},
      {"dir/a.b.lst", "dir", "a.b.lst", "a.b", "lst"},
      {"/x", "/", "x", "x", ""},
      {"/", "", "", "", ""},
      {"//", "", "", "", ""},
      {"//x", "/", "x", "x", ""},
      {"/dir/x.lst~", "/dir", "x.lst~", "x", "lst~"},
      {"dir/", "", "dir", "dir", ""},
      {"a/dir.old/", "a", "dir.old", "dir", "old"},
      {"a/dir//", "a", "dir", "dir", ""},
      {"a//b", "a", "b", "b", ""},
      {"a.b/c", "a.b", "c", "c", ""},
      {".lst", "", ".lst", "", "lst"},
      {"a.", "", "a.", "a", ""},
      {"a..", "", "a..", "a.", ""},
      {"./a", ".", "a", "a", ""},
      {"Bericht für Ölf.lst", "", "Bericht für Ölf.lst", "Bericht für Ölf", "lst"},
      {"\xFF/\xFE.\xFD", "\xFF", "\xFE.\xFD", "\xFE", "\xFD"},
  };
  for (const auto& row : rows) {
    const std::string path = Path(row.path);
    EXPECT_EQ(ParentFolderOf(path), Path(row.parent)) << row.path;
    EXPECT_EQ(FileNameOf(path), row.name) << row.path;
    EXPECT_EQ(BaseNameOf(path), row.base) << row.path;
    EXPECT_EQ(ExtensionOf(path), row.extension) << row.path;
  }
}

TEST(PathTest, JoiningNeverNormalises) {
  EXPECT_EQ(JoinPath("a", "b"), Path("a/b"));
  EXPECT_EQ(JoinPath(Path("a/"), "b"), Path("a//b"));
  EXPECT_EQ(JoinPath("", "b"), Path("/b"));
  EXPECT_EQ(JoinPath("a", ""), Path("a/"));
}

TEST(PathTest, OneTrailingSeparatorIsTakenAway) {
  EXPECT_EQ(WithoutTrailingSeparator(""), "");
  EXPECT_EQ(WithoutTrailingSeparator("a"), "a");
  EXPECT_EQ(WithoutTrailingSeparator(Path("a/")), "a");
  EXPECT_EQ(WithoutTrailingSeparator(Path("a//")), Path("a/"));
  EXPECT_EQ(WithoutTrailingSeparator(Path("/")), "");
}

}  // namespace
}  // namespace tessary
