#include "cli/omit_list.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace tessary {
namespace {

using Names = std::vector<std::string>;

struct OmitCase {
  const char* name;
  Names given;
  Names omitted;
  Names unmatched;
};

TEST(OmitList, FindsTheFilesMeant) {
  MemoryFiles files;
  const Names all = {"A.lst", "a.lst", "B.lst", "Öl.lst"};
  for (const std::string& name : all) files.Put("/r/" + name, "");
  const OmitCase rows[] = {
      {"nothing", {}, {}, {}},
      {"an exact name means one file", {"a.lst"}, {"a.lst"}, {}},
      {"another case means all", {"A.LST"}, {"A.lst", "a.lst"}, {}},
      {"another case of an umlaut", {"öl.LST"}, {"Öl.lst"}, {}},
      {"several", {"B.lst", "Öl.lst"}, {"B.lst", "Öl.lst"}, {}},
      {"the same twice", {"B.lst", "b.lst"}, {"B.lst"}, {}},
      {"no such file", {"c.lst", "B.lst", ""}, {"B.lst"}, {"c.lst", ""}},
      {"a path is no name", {"/r/B.lst"}, {}, {"/r/B.lst"}},
  };
  for (const auto& row : rows) {
    const OmitList list(files, "/r", row.given);
    Names omitted;
    for (const std::string& name : all) {
      if (list.IsOmitted(name)) omitted.push_back(name);
    }
    EXPECT_EQ(omitted, row.omitted) << row.name;
    EXPECT_EQ(list.unmatched(), row.unmatched) << row.name;
  }
}

TEST(OmitList, HasNoFilesInAMissingFolder) {
  MemoryFiles files;
  EXPECT_EQ(OmitList(files, "/none", {"a.lst"}).unmatched(), Names{"a.lst"});
  EXPECT_EQ(OmitList(files, "", {"a.lst"}).unmatched(), Names{"a.lst"});
}

TEST(OmitList, RemembersTheFilesAskedAbout) {
  MemoryFiles files;
  files.Put("/r/a.lst", "");
  OmitList list(files, "/r", {"a.lst"});
  EXPECT_TRUE(list.Omit("a.lst"));
  EXPECT_FALSE(list.Omit("b.lst"));
  EXPECT_EQ(list.seen(), (std::set<std::string>{"a.lst", "b.lst"}));
}

}  // namespace
}  // namespace tessary
