// Properties whose value is the key or type of the section that owns them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "levels/report_format.h"
#include "support/engine_fixture.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OwnerFieldTest : public testing::Test {
 protected:
  // Adds the lines to a level and tells what the last one found: "owner@level.column=value".
  std::string Found(int number, const std::vector<std::string_view>& lines) {
    const Ref<Level> level = engine_.NewLevel(number);
    FoundField field;
    bool found = false;
    for (const std::string_view line : lines) {
      AddArguments arguments = ArgumentsOf({.name = line});
      arguments.bxltLineType = line.front() == '[' ? bxltSection : bxltProperty;
      level->Add(arguments);
      found = level->GetFoundFieldValue(field);
    }
    if (!found) return "";
    EXPECT_FALSE(level->GetFoundFieldValue(field));
    const TextPool& pool = *engine_.context->pool();
    const std::string column = field.field == bxeaKey   ? "key"
                               : field.field == bxeaTyp ? "typ"
                                                        : "?";
    return std::string(pool.Text(field.owner)) + "@" + std::to_string(field.owner_level) + "." +
           column + "=" + std::string(pool.Text(field.value));
  }

  TestEngine engine_;
};

TEST_F(OwnerFieldTest, EveryRuleFiresAtItsLevelOnly) {
  const struct {
    const char* line;
    std::vector<std::pair<int, const char*>> found;  // by level
  } rows[] = {
      {"ObjectName=Text1", {{1, "[Object]@0.typ=Text1"}}},
      {"OBJECTNAME=x", {{1, "[Object]@0.typ=x"}}},
      {"LinkID=7", {{1, "[Object]@0.key=7"}}},
      {"linkid=", {{1, "[Object]@0.key="}}},
      {"LayerID=3", {}},
      {"Visible=1", {}},
      {"Text=abc", {{4, "[Line]@3.key=abc"}, {8, "[Column]@7.key=abc"}}},
      {"tEXT= a;b ", {{4, "[Line]@3.key= a;b"}, {8, "[Column]@7.key= a;b"}}},
      {"LineID=5", {{6, "[Line]@5.key=5"}}},
      {"Contents=x=y", {{9, "[Column]@7.key=x=y"}}},
      {"Width=10", {}},
      {"Text1=abc", {}},
      {"LineID", {{6, "[Line]@5.key="}}},
  };
  for (const auto& row : rows) {
    for (int level = 0; level < 10; ++level) {
      std::string expected;
      for (const auto& [at, text] : row.found) {
        if (at == level) expected = text;
      }
      EXPECT_EQ(Found(level, {row.line}), expected) << row.line << " at level " << level;
    }
  }
}

TEST_F(OwnerFieldTest, ALayerIDCountsDirectlyBehindVisibleOnly) {
  const struct {
    const char* name;
    std::vector<std::string_view> lines;
    const char* found;
  } rows[] = {
      {"behind Visible", {"Visible=1", "LayerID=3"}, "[Layer]@0.key=3"},
      {"in other case", {"Visible=1", "layerid=3"}, "[Layer]@0.key=3"},
      {"first of all", {"LayerID=3"}, ""},
      {"behind another property", {"Visible=1", "Width=1", "LayerID=3"}, ""},
      {"behind a Visible in other case", {"visible=1", "LayerID=3"}, ""},
      {"behind VISIBLE", {"VISIBLE=1", "LayerID=3"}, ""},
      {"behind a section", {"Visible=1", "[A]", "LayerID=3"}, ""},
      {"twice", {"Visible=1", "LayerID=3", "LayerID=4"}, ""},
      {"a LinkID behind Visible is the object's", {"Visible=1", "LinkID=3"}, "[Object]@0.key=3"},
  };
  for (const auto& row : rows) EXPECT_EQ(Found(1, row.lines), row.found) << row.name;
}

TEST_F(OwnerFieldTest, SectionsAndUnsplitLinesFindNothing) {
  const Ref<Level> level = engine_.NewLevel(4);
  FoundField field;
  for (const BXLineType type : {bxltSection, bxltUnknown}) {
    AddArguments arguments = ArgumentsOf({.name = "Text=abc"});
    arguments.bxltLineType = type;
    level->Add(arguments);
    EXPECT_FALSE(level->GetFoundFieldValue(field));
  }
}

TEST_F(OwnerFieldTest, AVariableNamedLikeARuleFollowsItsKey) {
  EXPECT_EQ(Found(1, {"User3=@LinkID;x"}), "");
  EXPECT_EQ(Found(1, {"User3=LinkID;x"}), "");
}

TEST(ReportFormatTest, EveryLevelHasOneOwnerLevelAtMost) {
  const int owner_levels[] = {-1, 0, -1, -1, 3, -1, 5, -1, 7, 7};
  for (int level = 0; level < 10; ++level) EXPECT_EQ(OwnerLevelOf(level), owner_levels[level]);
  EXPECT_EQ(OwnerLevelOf(-1), -1);
  EXPECT_EQ(OwnerLevelOf(10), -1);
}

class VariableNumbersTest : public testing::Test {
 protected:
  FailingEngine engine_;
};

TEST_F(VariableNumbersTest, VariablesAreNumberedInRowOrderWithOneCounter) {
  const Ref<Level> level = LevelOf(engine_.context, 1,
                                   {{.name = "User", .key = "@a"},
                                    {.name = "User", .key = "@b"},
                                    {.name = "Sum", .key = "@c"},
                                    {.name = "Other", .key = "Other"},
                                    {.name = "User", .key = "@d"},
                                    {.name = "uSER", .key = "@e"},
                                    {.name = "User7", .key = "User7"},
                                    {.name = "[User]", .key = "[User]"}});
  Ref<WriteTable> lines;
  level->PrepareWriting(lines, 0);
  EXPECT_THAT(Column(level->ElementArray(), bxeaName),
              ElementsAre("User1", "User2", "Sum3", "Other", "User4", "uSER5", "User7", "[User]"));
  EXPECT_THAT(WriteRows(lines), ElementsAre("1 User1=@a;", "1 User2=@b;", "1 Sum3=@c;", "1 Other=",
                                            "1 User4=@d;", "1 uSER5=@e;", "1 User7=", "1 [User]"));
  level->PrepareWriting(lines, 0);
  EXPECT_EQ(Column(level->ElementArray(), bxeaName)[0], "User1");
}

TEST_F(VariableNumbersTest, OtherLevelsLeaveVariablesAlone) {
  for (const int number : {0, 2, 7, 9}) {
    const Ref<Level> level = LevelOf(engine_.context, number, {{.name = "User", .key = "@a"}});
    Ref<WriteTable> lines;
    level->PrepareWriting(lines, 0);
    EXPECT_THAT(Column(level->ElementArray(), bxeaName), ElementsAre("User"));
  }
}

TEST_F(VariableNumbersTest, AFailureIsReportedUnderItsOwnName) {
  const Ref<Level> level = LevelOf(engine_.context, 1, {{.name = "User"}, {.name = "User"}});
  engine_.loop.FailAt(2, kInvalidCall);
  Ref<WriteTable> lines;
  EXPECT_THROW(level->PrepareWriting(lines, 0), Failure);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(5, "BXLevel1 Prozedur: UpdateVariableNumbers")));
  EXPECT_THAT(WriteRows(lines), IsEmpty());
}

}  // namespace
}  // namespace tessary
