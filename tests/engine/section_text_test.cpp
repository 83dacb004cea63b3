#include "engine/section_text.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/engine_fixture.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Text(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::vector<std::string> Walk(const std::string& text, std::int32_t level) {
  std::vector<std::string> steps;
  for (LineWalker line(text, level); line.Next();) {
    steps.push_back(std::to_string(line.level()) + "SP-"[line.type()] + std::string(line.line()));
  }
  return steps;
}

TEST(LineWalker, FollowsTheLevelThroughHeadersAndBraces) {
  EXPECT_THAT(
      Walk(Text({"[A]", " X=1", "[@Lines]", "{", "\t[B] ", "{", "", "Y", "}", "}", "[C]"}), 0),
      ElementsAre("0S[A]", "1PX=1", "1S[@Lines]", "2-{", "2S[B]", "3-{", "3-", "3PY", "2-}", "1-}",
                  "0S[C]"));
}

TEST(LineWalker, KnowsTheSectionOfLinesWithTabsInside) {
  EXPECT_THAT(Walk(Text({"[A]", "[@\tLi\tNes]", "[\tB]"}), 0),
              ElementsAre("0S[A]", "1S[@\tLi\tNes]", "0S[\tB]"));
}

TEST(LineWalker, TakesLineEndsApart) {
  EXPECT_THAT(Walk("[A]\r\nX=1\n\r\nY=2\r", 0), ElementsAre("0S[A]", "1PX=1", "1-", "1PY=2\r"));
  EXPECT_THAT(Walk("", 0), IsEmpty());
  EXPECT_THAT(Walk("\n", 0), ElementsAre("0-"));
}

TEST(LineWalker, KnowsWhereLinesBeginAndEnd) {
  const std::string text = " [A]\r\n X=1\r\n";
  LineWalker line(text, 0);
  ASSERT_TRUE(line.Next());
  ASSERT_TRUE(line.Next());
  EXPECT_EQ(line.begin(), text.data() + 6);
  EXPECT_EQ(line.end(), text.data() + text.size());
  EXPECT_FALSE(line.Next());
}

bool IsWellNested(const std::vector<std::string>& lines) {
  const std::string text = Text(lines);
  NestingCheck nesting(0);
  for (LineWalker line(text, 0); line.Next();) {
    if (!nesting.Takes(line)) return false;
  }
  return true;
}

TEST(NestingCheck, WantsEachLineBelowTheOneBefore) {
  const std::vector<std::string> ten_levels = {"[A]", "B", "{", "C", "{", "D", "{", "E", "{",
                                               "F",   "{", "G", "{", "H", "{", "I", "{", "J",
                                               "}",   "}", "}", "}", "}", "}", "}", "}", "[B]"};
  std::vector<std::string> eleven_levels = ten_levels;
  eleven_levels.insert(eleven_levels.begin() + 18, {"{", "K", "}"});
  struct Row {
    const char* name;
    std::vector<std::string> lines;
    bool well_nested;
  };
  const Row rows[] = {
      {"nothing", {}, true},
      {"a section", {"[A]", "X=1"}, true},
      {"all levels", ten_levels, true},
      {"one level too deep", eleven_levels, false},
      {"a property without a section", {"X=1"}, false},
      {"two braces at once", {"[A]", "X=1", "{", "{", "Y=1", "}", "}"}, false},
      {"two braces at once, below what another section had",
       {"[A]", "X", "{", "Y", "}", "[B]", "X", "{", "{", "Z", "}", "}"},
       false},
      {"an empty block", {"[A]", "X", "{", "}", "{", "Y", "}"}, true},
      {"a block that goes on", {"[A]", "X", "{", "Y", "}", "{", "Z", "}"}, true},
      {"a brace too many", {"[A]", "X", "}", "}"}, false},
      {"an open end", {"[A]", "X", "{", "Y"}, true},
      {"a section below a section", {"[A]", "{", "[B]", "}"}, false},
  };
  for (const Row& row : rows) EXPECT_EQ(IsWellNested(row.lines), row.well_nested) << row.name;
}

TEST(DistinctElements, IsFalseWhereverElementsMayBeTheSame) {
  std::vector<std::string> many;
  for (int n = 0; n < 2000; ++n) many.push_back("Property" + std::to_string(n) + "=1");
  std::vector<std::string> many_and_one = many;
  many_and_one.push_back("PROPERTY1234=2");
  std::vector<std::string> many_and_the_first = many;
  many_and_the_first.push_back("Property0=2");
  struct Row {
    const char* name;
    std::vector<std::string> lines;
    bool distinct;
  };
  const Row rows[] = {
      {"nothing", {}, true},
      {"other names", {"A=1", "B=1"}, true},
      {"the same name", {"A=1", "B=1", "A=2"}, false},
      {"another letter case", {"Name=1", "NAME=2"}, false},
      {"names that differ behind the eighth letter", {"Variable1=1", "Variable2=2"}, true},
      {"names that differ in the middle only",
       {"Variable1Variable=1", "Variable2Variable=2"},
       false},
      {"the same name in different lists",
       {"A=1", "[@Lines]", "{", "A=1", "[S]", "{", "A=1", "}", "[T]", "{", "A=1", "}", "}"},
       true},
      {"the same name on both sides of what is below",
       {"[@Lines]", "{", "A=1", "[S]", "{", "B=1", "}", "A=2", "}"},
       false},
      {"the same section", {"[@Lines]", "{", "[S]", "[T]", "[S]", "}"}, false},
      {"a variable, whose name is not what it seems", {"User1=@A;1"}, false},
      {"variables behind tabs", {"User1=\t@A;1", "User2= \t @A;1"}, false},
      {"letters beyond ASCII", {"Größe=1"}, false},
      {"a tab in the name", {"A\tB=1"}, false},
      {"blanks behind the name", {"A =1"}, false},
      {"no equals sign", {"A"}, false},
      {"no name", {"=1"}, false},
      {"many", many, true},
      {"many and one twice", many_and_one, false},
      {"many and the first one twice", many_and_the_first, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(DistinctElements().In(Text(row.lines), 1), row.distinct) << row.name;
  }
}

// Whatever section came before, each one is told about as if it were the first.
TEST(DistinctElements, AreTheSameWhateverCameBefore) {
  const std::string texts[] = {
      "",
      " A=1\r\n B=2\r\n",
      " A=3\r\n B=4\r\n",
      " A=\r\n B= \t\r\n",
      " A=1\n B=2\n",
      " A=1\r\n B=2",
      " A=1\r\n B=",
      " A=1\r\n B=@C\r\n",
      " A= \t@C\r\n B=1\r\n",
      " A=1\r\n",
      " A=1\r\n B=2\r\n C=3\r\n",
      " A=1\r\n B=2\r\n B=3\r\n",
      " A=1\r\n B=2\r\n\r\n",
      "A=1\r\nB=2\r\n",
      " A=1\r\n A=2\r\n",
      " a=1\r\n B=2\r\n",
      " A =1\r\n B=2\r\n",
      " A=1\r\n\tB=2\r\n",
      " [A=1\r\n B=2\r\n",
      " [A=1]\r\n B=2\r\n",
      " [A=1]\r\n [A=1]\r\n",
      " [A=ü]\r\n B=2\r\n",
      " [A=1\r\n [A=2\r\n",
      " A=1\r\n{\r\n B=2\r\n}\r\n",
  };
  for (const std::string& first : texts) {
    for (const std::string& second : texts) {
      for (const std::int32_t level : {1, 2}) {
        DistinctElements distinct;
        distinct.In(first, 1);
        EXPECT_EQ(distinct.In(second, level), DistinctElements().In(second, level))
            << first << "before\n"
            << second;
      }
    }
  }
}

TEST(AsReadWriter, WritesTheSameWhateverCameBefore) {
  const std::string texts[] = {
      "",
      " A=1\r\n B=2\r\n",
      " A=3\r\n B=4\r\n",
      " A=\r\n B=2\r\n",
      " A=1\n B=2\r\n",
      " A=1 \r\n B=2\r\n",
      " A=1\r\n B=2",
      " A=1\r\n B=@C\r\n",
      " A= @C\r\n B=1\r\n",
      " A= 1\r\n B=\t1\r\n",
      " A=1\t\r\n B=1\r\n",
      " A\tA=1\r\n B=1\r\n",
      " A\tA=2\r\n B=1\r\n",
      " A=1\r\n C=2\r\n B=3\r\n",
      "A=1\r\nB=2\r\n",
      "  A=1\r\n  B=2\r\n",
      " User=1\r\n B=2\r\n",
      "  User=1\r\n  Columns=2\r\n",
      " A=1\r\n {\r\n  B=2\r\n }\r\n C=1\r\n",
      " [@Lines]\r\n {\r\n  A=2\r\n }\r\n",
  };
  const auto rows_of = [](AsReadWriter& writer, const std::string& text, std::int32_t level) {
    std::vector<std::string> rows;
    WriteTable table(true);
    if (!writer.Append(text, level, table)) rows.push_back("not as read");
    for (std::int32_t row = 1; row <= table.rows(); ++row) {
      rows.push_back(std::to_string(table.Level(row)) + std::string(table.Text(row)));
    }
    return rows;
  };
  for (const std::string& first : texts) {
    for (const std::string& second : texts) {
      for (const std::int32_t level : {1, 2, 7}) {
        AsReadWriter writer;
        AsReadWriter fresh;
        rows_of(writer, first, 1);
        EXPECT_EQ(rows_of(writer, second, level), rows_of(fresh, second, level))
            << first << "before\n"
            << second;
      }
    }
  }
}

TEST(AsReadWriter, GivesTheRowsOrNothing) {
  struct Row {
    const char* name;
    std::vector<std::string> lines;
    bool done;
  };
  const Row rows[] = {
      {"properties", {" A=1 ", "\tB= x y", "C="}, true},
      {"a tab inside", {"A=1", "B=x\ty"}, false},
      {"no equals sign", {"A=1", "B"}, false},
      {"no name", {"=1"}, false},
      {"blanks behind the name", {"A =1"}, false},
      {"a property with the name of a section", {"[A]=1"}, false},
      {"a variable", {"User1=@A;1"}, false},
      {"the name of a variable", {"A=1", "user=1"}, false},
      {"the other name of a variable", {"SUM=1"}, false},
      {"the name of a variable deeper", {"A=1", "{", "User=1", "}"}, true},
      {"the name of the number of columns", {"Columns=1"}, true},
  };
  for (const Row& row : rows) {
    WriteTable table;
    table.Append(0, "[Before]");
    EXPECT_EQ(AsReadWriter().Append(Text(row.lines), 1, table), row.done) << row.name;
    if (!row.done) {
      EXPECT_EQ(table.rows(), 1) << row.name;
      table.Append(0, "[Behind]");
      EXPECT_EQ(table.Text(2), "[Behind]") << row.name;
    }
  }
}

TEST(AsReadWriter, KeepsTheLevels) {
  const Ref<WriteTable> table = MakeRef<WriteTable>();
  EXPECT_TRUE(AsReadWriter().Append(Text({"[@Lines]", "  {", "\t[S]", "", "{", "A= 1", "}", "}"}),
                                    1, *table));
  EXPECT_THAT(WriteRows(table), ElementsAre("1 [@Lines]", "2 [S]", "3 A= 1"));
}

TEST(AsReadWriter, LeavesTheNumberOfColumnsToThoseWhoCount) {
  WriteTable table;
  EXPECT_FALSE(AsReadWriter().Append(Text({"{", "COLUMNS=3", "}"}), 7, table));
  EXPECT_TRUE(AsReadWriter().Append(Text({"{", "Columns=3", "}"}), 8, table));
}

// Lines that stand as they would be written make one row.
TEST(AsReadWriter, PutsLinesIntoBlocks) {
  struct Row {
    const char* what;
    const char* contents;
    std::vector<std::string> rows;
  };
  const Row rows[] = {
      {"all of them", " A=1\r\n B=\r\n C= x y\r\n", {"1 A=1\r\n B=\r\n C= x y"}},
      {"one", " A=1\r\n", {"1 A=1"}},
      {"another line end", " A=1\r\n B=1\n C=1\r\n D=1\r\n", {"1 A=1", "1 B=1", "1 C=1\r\n D=1"}},
      {"no line end", " A=1\r\n B=1", {"1 A=1", "1 B=1"}},
      {"another indentation",
       " A=1\r\nB=1\r\n  C=1\r\n\tD=1\r\n",
       {"1 A=1", "1 B=1", "1 C=1", "1 D=1"}},
      {"blanks behind", " A=1 \r\n B=1\t\r\n C=1\r\n", {"1 A=1", "1 B=1", "1 C=1"}},
      {"blank lines", " A=1\r\n\r\n \r\n B=1\r\n", {"1 A=1\r\n B=1"}},
      {"an empty block", " A=1\r\n {\r\n }\r\n B=1\r\n", {"1 A=1\r\n B=1"}},
      {"lines of two levels",
       " A=1\r\n  {\r\n  B=1\r\n  C=1\r\n  }\r\n",
       {"1 A=1", "2 B=1\r\n  C=1"}},
      {"sections", " A=1\r\n [@Lines]\r\n B=1\r\n", {"1 A=1", "1 [@Lines]", "1 B=1"}},
      {"a variable's name, deeper",
       " A=1\r\n  {\r\n  User=1\r\n  A=1\r\n",
       {"1 A=1", "2 User=1\r\n  A=1"}},
  };
  for (const Row& row : rows) {
    const Ref<WriteTable> table = MakeRef<WriteTable>(true);
    EXPECT_TRUE(AsReadWriter().Append(row.contents, 1, *table)) << row.what;
    EXPECT_EQ(WriteRows(table), row.rows) << row.what;
  }
}

TEST(AsReadWriter, KeepsBlocksSmall) {
  const std::string line = " Name=value\r\n";
  std::string contents;
  for (int n = 0; n < 1000; ++n) contents += line;
  const Ref<WriteTable> table = MakeRef<WriteTable>(true);
  EXPECT_TRUE(AsReadWriter().Append(contents, 1, *table));
  EXPECT_GT(table->rows(), 1);
  std::string written;
  for (std::int32_t row = 1; row <= table->rows(); ++row) {
    EXPECT_LE(table->Text(row).size(), 4096 + line.size());
    written.append(" ").append(table->Text(row)).append("\r\n");
  }
  EXPECT_EQ(written, contents);
}

TEST(AsReadWriter, LeavesOutOfBlocksWhatHasToBeRead) {
  for (const char* contents :
       {" A=1\r\n B=1\tC\r\n", " A=1\r\n User1=@A;1\r\n", " A=1\r\n A= @B;1\r\n",
        " A=1\r\n SUM=1\r\n", " A=1\r\n B =1\r\n", " A=1\r\n =1\r\n", " A=1\r\n B\r\n"}) {
    WriteTable table(true);
    EXPECT_FALSE(AsReadWriter().Append(contents, 1, table)) << contents;
    EXPECT_EQ(table.rows(), 0) << contents;
  }
}

// What is taken back must not have become part of a row that was there before.
TEST(AsReadWriter, GoesOnWithNoBlockOfOthers) {
  for (const bool done : {false, true}) {
    const Ref<WriteTable> table = MakeRef<WriteTable>(true);
    table->AppendProperty(1).append("Before=1");
    EXPECT_EQ(AsReadWriter().Append(done ? " A=1\r\n" : " A=1\r\n B\r\n", 1, *table), done);
    const std::vector<std::string> rows = WriteRows(table);
    EXPECT_EQ(rows, done ? std::vector<std::string>({"1 Before=1", "1 A=1"})
                         : std::vector<std::string>({"1 Before=1"}));
  }
}

TEST(AsReadWriter, TakesDeepIndentationForBlocks) {
  const Ref<WriteTable> table = MakeRef<WriteTable>(true);
  EXPECT_TRUE(AsReadWriter().Append("\t {\r\n\t A=1\r\n\t B=1\r\n\tC=1\r\n", 5, *table));
  EXPECT_THAT(WriteRows(table), ElementsAre("5 A=1\r\n\t B=1", "5 C=1"));
}

}  // namespace
}  // namespace tessary
