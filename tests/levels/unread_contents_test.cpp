// Reading a file as a whole leaves the contents of its sections unread. Nobody can tell, except by
// asking for the unread lines.

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "engine/level_basis.h"
#include "report/report_file.h"
#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

TEST(UnreadContents, AreThoseOfWellNestedFiles) {
  const TestEngine engine;
  const auto tree =
      ReadFileOfLines(engine.context, {"[Object]", "LinkID=7", "A=1", "[Layer]", "[Empty]"});
  ASSERT_EQ(tree->rows(), 3);
  EXPECT_EQ(tree->Row(1).unread(), "LinkID=7\r\nA=1\r\n");
  EXPECT_EQ(tree->Row(2).unread(), "");
  for (std::int32_t row = 1; row <= tree->rows(); ++row) {
    EXPECT_FALSE(tree->Row(row).child);
    EXPECT_TRUE(tree->Row(row).HasChild());
    EXPECT_EQ(tree->Row(row).value(), "");
  }
  EXPECT_THAT(Column(tree, bxeaKey), ElementsAre("7", "[Layer]", "[Empty]"));
  EXPECT_THAT(Column(tree, bxeaPosPrevKey), ElementsAre("", "7", "[Layer]"));
}

TEST(UnreadContents, AreReadOneListAtATime) {
  const TestEngine engine;
  const auto tree = ReadFileOfLines(
      engine.context, {"[Object]", "[@Lines]", "{", "[S]", "{", "A=1", "}", "[T]", "}"});
  const Ref<Level> contents = engine.context->ChildOf(*tree, 1);
  EXPECT_EQ(tree->Row(1).unread(), "");
  EXPECT_EQ(tree->Row(1).child, contents);
  const Ref<ElementTable> lines = contents->ElementArray();
  ASSERT_EQ(lines->rows(), 1);
  EXPECT_EQ(lines->Row(1).unread(), "{\r\n[S]\r\n{\r\nA=1\r\n}\r\n[T]\r\n}\r\n");
  EXPECT_EQ(engine.context->ChildOf(*lines, 1)->ElementArray()->rows(), 2);
}

// How long a list becomes is guessed from its beginning.
TEST(UnreadContents, GiveListsOfAnyLength) {
  constexpr int kMany = 3000;
  for (const std::size_t first_size : {std::size_t{0}, std::size_t{400}}) {
    Lines sections;
    Lines properties = {"[S]"};
    for (int n = 0; n < kMany; ++n) {
      const std::string filling(n < kMany / 2 ? first_size : 400 - first_size, 'x');
      sections.push_back("[" + std::to_string(n) + filling + "]");
      properties.push_back(std::to_string(n) + filling + "=");
    }
    for (const Lines& lines : {sections, properties}) {
      const TestEngine engine;
      EXPECT_EQ(Dump(ReadFileOfLines(engine.context, lines)),
                Dump(ReadLines(engine.context, lines)));
    }
  }
}

TEST(UnreadContents, CanBeLookedAtWithoutKeepingTheLevel) {
  const TestEngine engine;
  const auto tree = ReadFileOfLines(engine.context, {"[A]", "X=1", "[B]"});
  EXPECT_THAT(Brief(engine.context->ContentsOf(tree->Row(1))), ElementsAre("- X|X|1"));
  EXPECT_NE(tree->Row(1).unread(), "");
  EXPECT_FALSE(engine.context->ContentsOf(tree->Row(2)));
}

TEST(UnreadContents, AreNotOverwrittenByAValue) {
  const TestEngine engine;
  const auto tree = ReadFileOfLines(engine.context, {"[A]", "X=1"});
  EXPECT_EQ(FailureNumber([&] { tree->SetValue(1, "1"); }), kInvalidCall);
  tree->SetChild(1, nullptr);
  EXPECT_EQ(tree->Row(1).unread(), "");
  tree->SetValue(1, "1");
  EXPECT_EQ(tree->Row(1).value(), "1");
}

TEST(UnreadContents, AreForLevelClassesOnly) {
  const TestEngine engine;
  const auto basis = MakeRef<BXLevelBasis>(engine.context);
  EXPECT_EQ(FailureNumber([&] { basis->ReadLines("X=1"); }), kInvalidCall);
}

TEST(UnreadContents, StayUnreadWhereNothingIsDifferent) {
  const TestEngine engine;
  const Lines old_lines = {"[A]", "X=1", "Y=2", "[B]", "X=1"};
  const Lines new_lines = {"[A]", "X=1", "Y=2", "[B]", "X=2"};
  const auto old_tree = ReadFileOfLines(engine.context, old_lines);
  const auto new_tree = ReadFileOfLines(engine.context, new_lines);
  const auto level = engine.NewLevel(0);
  level->Compare(old_tree, new_tree);
  EXPECT_THAT(Brief(level->ElementArray()), ElementsAre("U [B]|[B]|", "  U X|X|2"));
  EXPECT_NE(old_tree->Row(1).unread(), "");
  EXPECT_NE(new_tree->Row(1).unread(), "");
  EXPECT_EQ(new_tree->Row(2).unread(), "");
}

// The second B stands between the same neighbours as the first, which is found for both.
TEST(UnreadContents, AreReadWhereAListDiffersFromItself) {
  const Lines lines = {"[S]", "A=1", "B=1", "A=2", "B=2", "A=3"};
  for (const auto read : {&ReadLines, &ReadFileOfLines}) {
    const TestEngine engine;
    const auto level = engine.NewLevel(0);
    level->Compare(read(engine.context, lines), read(engine.context, lines));
    EXPECT_THAT(Brief(level->ElementArray()), ElementsAre("U [S]|[S]|", "  U B|B|2"));
  }
}

TEST(UnreadContents, StayUnreadWhenTheyAreWritten) {
  const TestEngine engine;
  const auto tree = ReadFileOfLines(engine.context, {"[A]", "X=1", "[B]", "User1=@a;1"});
  EXPECT_THAT(WriteLines(engine.context, tree), ElementsAre("[A]", " X=1", "[B]", " User1=@a;1"));
  EXPECT_NE(tree->Row(1).unread(), "");
  EXPECT_EQ(tree->Row(2).unread(), "");
}

TEST(UnreadContents, ComeBeforeWhatIsAdded) {
  const TestEngine engine;
  const auto tree = ReadFileOfLines(engine.context, {"[A]", "X=1"});
  AddArguments arguments;
  arguments.strName = "Y=2";
  arguments.bxltLineType = bxltProperty;
  engine.context->ChildOf(*tree, 1)->Add(arguments);
  EXPECT_THAT(Brief(engine.context->ChildOf(*tree, 1)->ElementArray()),
              ElementsAre("- X|X|1", "- Y|Y|2"));
}

// A failure on its way up is not forgotten because somebody looks into a section.
TEST(UnreadContents, LeaveTheErrorCollectionAlone) {
  TestEngine engine;
  const auto tree = ReadFileOfLines(engine.context, {"[A]", "X=1"});
  engine.errors.objErrors->Add({ErrorEntry::kFailure, 5, "S", "T"});
  EXPECT_EQ(engine.context->ChildOf(*tree, 1)->ElementArray()->rows(), 1);
  EXPECT_THAT(Entries(engine.errors), ElementsAre("4 5 S: T"));
}

TEST(UnreadContents, FailToBeFoundAsReadingALineFails) {
  FailingEngine engine;
  engine.loop.FailAt(2, kInvalidCall);
  BXReportFile store(engine.context);
  const std::string_view text = engine.context->pool()->Adopt("[A]\r\nX=1\r\n");
  EXPECT_EQ(FailureNumber([&] { store.AddLines(text); }), kInvalidCall);
  EXPECT_THAT(Entries(engine.errors), ElementsAre(EntryText(5, "BXReportFile Prozedur: AddLine")));
}

// Whatever the lines are, the tree and what is written are those of reading line by line.
TEST(UnreadContents, MakeNoDifference) {
  struct Row {
    const char* name;
    Lines lines;
  };
  const Row rows[] = {
      {"nothing", {}},
      {"blank lines", {"", "  ", "[A]", "\t", "X=1"}},
      {"objects and layers",
       {"[Object]", "ObjectName=a", "LinkID=1", "[Layer]", "Visible=1", "LayerID=2", "[Object]",
        "LinkID=3", "LayerID=4"}},
      {"a layer's number behind Visible and a block",
       {"[Layer]", "Visible=1", "{", "X=1", "Y=2", "}", "LayerID=2"}},
      {"a layer's number behind another property",
       {"[Layer]", "Visible=1", "X=1", "LayerID=2", "[Layer]", "Visible=1", "X=1", "Y=1",
        "LayerID=3"}},
      {"a layer's number that is not behind Visible", {"[Layer]", "visible=1", "LayerID=2"}},
      {"a layer's number behind Visible, not the first property",
       {"[Layer]", "X=1", "Visible=1", "LayerID=2"}},
      {"the key of a section before the last", {"[Object]", "[Foo]", "LinkID=8", "[Object]"}},
      {"a tab inside an owner's property",
       {"[Object]", "Lin\tkID=8", "[Layer]", "Visi\tble=1", "LayerID=9"}},
      {"a tab inside the header of lines", {"[Object]", "A=1", "[@\tLines]", "{", "B=2", "}"}},
      {"columns two levels above their key",
       {"[O]", "[@Lines]",   "{",   "[P]", "{",         "[L]",      "{",      "[Q]", "{",
        "[M]", "{",          "[R]", "{",   "Columns=5", "[Column]", "{",      "a=1", "[Cells]",
        "{",   "Contents=k", "}",   "}",   "[Column]",  "{",        "Text=t", "}",   "}",
        "}",   "}",          "}",   "}",   "}",         "}"}},
      {"contents under a property", {"[A]", "X=1", "{", "Y=1", "{", "Z=1", "}", "}", "W=1"}},
      {"two braces at once", {"[A]", "X=1", "{", "{", "Y=1"}},
      {"two braces at once after another section",
       {"[A]", "X", "{", "Y", "}", "[B]", "X", "{", "{", "Z", "}", "}"}},
      {"a brace too many", {"[A]", "}", "[B]", "X=1"}},
      {"a property first", {"X=1", "[A]"}},
      {"eleven levels", {"[A]", "1", "{", "2", "{", "3", "{", "4", "{",  "5", "{",
                         "6",   "{", "7", "{", "8", "{", "9", "{", "10", "}", "9"}},
      {"statuses", {"[A]", "U(:::::::::);X=1", "N;Y=1", "D(;Z=1"}},
      {"what only looks like a status", {"[A]", "Name=1", "User1=@a;1", "D=(1", "N\t=1"}},
      {"a status with a tab", {"[A]", "N\t;Y=1"}},
      {"variables", {"[A]", "User7=@a;1", "Sum3=@b;2", "User=1", "X=@c"}},
      {"lines without an equals sign", {"[A]", "X", " Y "}},
      {"blanks around names", {"[A]", "X =1", "=2", " = 3"}},
      {"a property with the name of a section", {"[A]", "[B]=1"}},
      {"tabs inside", {"[A]", "X=1\t2", "Y\tZ=1"}},
      {"only a carriage return at the end", {"[A]", "X=1\r"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::string text[2];
    std::string written[2];
    for (const bool by_file : {false, true}) {
      const TestEngine engine;
      const auto read = by_file ? &ReadFileOfLines : &ReadLines;
      try {
        text[by_file] = Dump(read(engine.context, row.lines));
        for (const auto& line : WriteLines(engine.context, read(engine.context, row.lines))) {
          written[by_file] += line + "\n";
        }
      } catch (const Failure& failure) {
        text[by_file] = std::to_string(failure.number());
      }
    }
    EXPECT_EQ(text[true], text[false]);
    EXPECT_EQ(written[true], written[false]);
  }
}

// Among elements of one identity and one neighbourhood the first is found for all of them, so that
// equal contents may differ.
TEST(UnreadContents, MayDifferFromEqualOnes) {
  const Lines lines = {"[A]",          "User=@x;0",   "User1=\t@x;1", "Sum1=\t@s;1",
                       "User2=\t@x;2", "Sum2=\t@s;1", "User3=\t@x;3", "Sum3=\t@s;1"};
  std::vector<std::string> differences[2];
  for (const bool by_file : {false, true}) {
    const TestEngine engine;
    const auto read = by_file ? &ReadFileOfLines : &ReadLines;
    const auto level = engine.NewLevel(0);
    level->Compare(read(engine.context, lines), read(engine.context, lines));
    differences[by_file] = Brief(level->ElementArray());
  }
  EXPECT_THAT(differences[false], ElementsAre("U [A]|[A]|", "  U User|@x|3"));
  EXPECT_EQ(differences[true], differences[false]);
}

TEST(UnreadContents, CountLinesAndLevelsLikeReadingLineByLine) {
  struct Row {
    std::string text;
    std::int64_t lines;
    std::int32_t level;
    std::int64_t dropped;
  };
  const Row rows[] = {
      {"", 0, 0, 0},
      {"[A]\r\nX=1\r\n\r\n", 3, 1, 0},
      {"[A]\nX=1\n{\nY=1", 4, 2, 0},
      {"[A]\n}\n}\nX=1\n", 4, -2, 1},
  };
  for (const Row& row : rows) {
    const TestEngine engine;
    BXReportFile store(engine.context);
    EXPECT_EQ(store.AddLines(engine.context->pool()->Adopt(row.text)), row.lines) << row.text;
    EXPECT_EQ(store.level(), row.level) << row.text;
    EXPECT_EQ(store.lines_dropped(), row.dropped) << row.text;
  }
}

}  // namespace
}  // namespace tessary
