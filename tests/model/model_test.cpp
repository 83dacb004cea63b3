// Tests of the second opinion itself: it must be right before anything is held against it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "model_compare.h"
#include "model_convert.h"
#include "model_diff_text.h"
#include "model_find.h"
#include "model_report.h"
#include "model_tree.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "random_reports.h"

namespace tessary::model {
namespace {

int FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.number();
  }
  return 0;
}

Row Element(const std::string& name, const std::string& key = "", const std::string& value = "",
            int status = kUnknown) {
  Row row = Identity(name, key, "");
  row.value = value;
  row.status = status;
  return row;
}

Array ArrayOf(const Rows& rows) { return std::make_shared<Rows>(rows); }

// A level filled through Add with position bookkeeping.
Level LevelOf(int number, const Rows& rows) {
  Level level(number);
  for (const Row& row : rows) Add(level, row);
  return level;
}

std::string Names(const Array& rows) {
  std::string names;
  for (int row = 1; row <= Count(rows); ++row) {
    names += (row > 1 ? " " : "") + RowAt(rows, row).name;
  }
  return names;
}

std::string Keys(const Array& rows) {
  std::string keys;
  for (int row = 1; row <= Count(rows); ++row) {
    keys += (row > 1 ? " " : "") + RowAt(rows, row).key;
  }
  return keys;
}

std::string DumpOf(const Lines& lines) { return Dump(ReadLines(lines)); }

// The rows that a read list of level `level` has below OpenTo(level).
Array RowsBelow(const Array& tree, int level) {
  Array rows = tree;
  for (int n = 0; n < level; ++n) rows = ElementArray(RowAt(rows, Count(rows)).child);
  return rows;
}

Lines Below(int level, const Lines& tail) {
  Lines lines = OpenTo(level);
  lines.insert(lines.end(), tail.begin(), tail.end());
  return lines;
}

// What the comparison of two lists of level `level` records in that level.
std::string DifferenceAt(int level, const Lines& old_tail, const Lines& new_tail) {
  Level result(level);
  Compare(result, RowsBelow(ReadLines(Below(level, old_tail)), level),
          RowsBelow(ReadLines(Below(level, new_tail)), level));
  std::string text;
  for (int row = 1; row <= Count(result.rows); ++row) {
    const Row& found = RowAt(result.rows, row);
    text += (row > 1 ? " " : "") + StatusToLetter(found.status) + ":" + found.key;
  }
  return text;
}

TEST(ModelSyntax, SectionLines) {
  const struct {
    const char* line;
    bool section;
  } rows[] = {{"[Object]", true}, {"[]", true},     {"[", false},   {"]", false},
              {"", false},        {"[Line", false}, {"A=]", false}, {"[a]=[b]", true}};
  for (const auto& row : rows) EXPECT_EQ(IsSectionLine(row.line), row.section) << row.line;
  EXPECT_TRUE(IsLineSection("[LINE]"));
  EXPECT_FALSE(IsLineSection("[Lines]"));
}

TEST(ModelSyntax, SplitProperty) {
  const struct {
    const char *line, *name, *key, *value;
  } rows[] = {
      {"", "", "", ""},
      {"Foo", "Foo", "Foo", ""},
      {" Name = Value ", "Name", "Name", " Value"},
      {"A=B=C", "A", "A", "B=C"},
      {"=x", "", "", "x"},
      {"A=", "A", "A", ""},
      {"User3=@Total;Sum(Price)", "User", "@Total", "Sum(Price)"},
      {"User3=Total", "User3", "User3", "Total"},
      {"Sum12=@Total", "Sum12", "Sum12", "@Total"},
      {"user7=@x;y", "User", "@x", "y"},
      {"SUM 7= @x ; y;z", "Sum", "@x", " y;z"},
      {"User=@x;y", "User", "User", "@x;y"},
      {"User7=x;@y", "User7", "User7", "x;@y"},
      {"User7=;@y", "User7", "User7", ";@y"},
      {"XSum12=@x;y", "XSum12", "XSum12", "@x;y"},
      {"Usera=@x;y", "Usera", "Usera", "@x;y"},
      {"User1,5=@x;y", "User", "@x", "y"},
      {"User-1e2=@x;y", "User", "@x", "y"},
      {"SumUser1=@x;y", "SumUser1", "SumUser1", "@x;y"},
      {"User1=@;", "User", "@", ""},
  };
  for (const auto& row : rows) {
    const Row split = SplitProperty(row.line);
    EXPECT_EQ(split.name, row.name) << row.line;
    EXPECT_EQ(split.key, row.key) << row.line;
    EXPECT_EQ(split.value, row.value) << row.line;
  }
}

TEST(ModelSyntax, JoinProperty) {
  EXPECT_EQ(JoinProperty("User3", "@Total", "Sum(Price)"), "User3=@Total;Sum(Price)");
  EXPECT_EQ(JoinProperty("Width", "WIDTH", "5"), "WIDTH=5");
  EXPECT_EQ(JoinProperty("", "", "5"), "");
  EXPECT_EQ(JoinProperty("", "k", "5"), "=k;5");
}

TEST(ModelFind, NarrowsColumnByColumn) {
  Row twin = Element("A", "k");
  Row after_b = twin;
  after_b.prev_name = "B";
  Row second_of_b = after_b;
  second_of_b.pos_nr = "2";
  Row before_x = twin;
  before_x.next_name = "X";
  Row wanted_b = after_b;
  wanted_b.pos_nr = "2";
  Row wanted_key_only = after_b;
  wanted_key_only.prev_name = "none";

  const struct {
    const char* what;
    Rows rows;
    Row wanted;
    int found;
  } rows[] = {
      {"no rows", {}, twin, 0},
      {"other key", {twin}, Element("A", "other"), 0},
      {"an empty key finds only an empty key", {twin}, Element("A"), 0},
      {"letter case does not matter", {Element("x"), Element("a", "K")}, twin, 2},
      {"one candidate needs no position", {Element("x"), second_of_b}, twin, 2},
      {"next name is no criterion", {twin, before_x}, before_x, 1},
      {"empty position values leave nothing and the first one stands",
       {after_b, second_of_b},
       twin,
       1},
      {"previous name decides", {twin, after_b}, after_b, 2},
      {"the number decides last", {twin, after_b, second_of_b}, wanted_b, 3},
      {"a column without a match ends the search", {after_b, twin}, wanted_key_only, 1},
      {"equal ones: the first", {twin, twin}, twin, 1},
  };
  for (const auto& row : rows)
    EXPECT_EQ(FindElement(ArrayOf(row.rows), row.wanted), row.found) << row.what;
  EXPECT_EQ(FindElement(nullptr, twin), 0);
}

TEST(ModelDiffText, WritesTheFullForm) {
  Row element = Element("Depth", "", "", kNew);
  element.prev_name = "Width";
  element.next_name = "Height";
  EXPECT_EQ(
      ElementToDiffText(element),
      "N(Key=:Typ=:PrevName=Width:PrevKey=:PrevTyp=:NextName=Height:NextKey=:NextTyp=:PosNr=);");
  element.status = kUnknown;
  EXPECT_EQ(ElementToDiffText(element), "");
}

TEST(ModelDiffText, ReadsLines) {
  const struct {
    const char *line, *letter, *text, *fields;
  } rows[] = {
      {"", "", "", "||||||||"},
      {"Width=10", "", "Width=10", "||||||||"},
      {"N;Width=10", "N", "Width=10", "||||||||"},
      {" D ; x ", "D", "x", "||||||||"},
      {"n;Width=10", "", "n;Width=10", "||||||||"},
      {"X(Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);A", "",
       "X(Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);A", "||||||||"},
      {"Formula=A;B", "", "Formula=A;B", "||||||||"},
      {";A", "", ";A", "||||||||"},
      {"U(Key=k:Typ=t:PrevName=a:PrevKey=b:PrevTyp=c:NextName=d:NextKey=e:NextTyp=f:PosNr=2);[L]",
       "U", "[L]", "k|t|a|b|c|d|e|f|2"},
      {" U ( Key= k : Typ=t :a:b:c:d:e:f: PosNr= 2 ) x; A=1 ", "U", "A=1", "k|t|a|b|c|d|e|f|2"},
      {"U(k:t:a:b:c:d:e:f);A", "U", "A", "||||||||"},
      {"U(Key=x:y:t:a:b:c:d:e:f:2);A", "U", "A", "||||||||"},
      {"D(Key=a)b:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);A", "D", "A",
       "||||||||"},
      {"D(Key=a;b:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);A", "D",
       "b:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);A", "||||||||"},
      {"U(key=KEY=xKey=:tTYP=:::::::2);A", "U", "A", "x|t|||||||2"},
      {"U(KeKey=y=1::::::::);A", "U", "A", "Key=1||||||||"},
      {"D();A", "D", "A", "||||||||"},
      {"D(x;A", "D", "A", "||||||||"},
      {"N;", "N", "", "||||||||"},
  };
  for (const auto& row : rows) {
    const Row read = DiffTextToElement(row.line);
    EXPECT_EQ(StatusToLetter(read.status), row.letter) << row.line;
    EXPECT_EQ(read.name, row.text) << row.line;
    EXPECT_EQ(read.key + "|" + read.typ + "|" + read.prev_name + "|" + read.prev_key + "|" +
                  read.prev_typ + "|" + read.next_name + "|" + read.next_key + "|" + read.next_typ +
                  "|" + read.pos_nr,
              row.fields)
        << row.line;
  }
}

TEST(ModelAdd, KeepsPositionsAndNumbersRuns) {
  const Level level = LevelOf(2, {Element("Line"), Element("line"), Element("LINE"),
                                  Element("Other"), Element("[S]", "k")});
  EXPECT_EQ(Dump(level),
            "- Line||||||line|||1|\n"
            "- line|||Line|||LINE|||2|\n"
            "- LINE|||line|||Other|||3|\n"
            "- Other|||LINE|||[S]|k|||\n"
            "- [S]|k||Other|||||||\n");
}

TEST(ModelAdd, KnownStatusIsStoredAsGiven) {
  Level level = LevelOf(2, {Element("A"), Element("A", "", "", kNew)});
  EXPECT_EQ(Dump(level), "- A||||||||||\nN A||||||||||\n");
}

TEST(ModelAdd, PassedPositionsAreKept) {
  Level level = LevelOf(2, {Element("A")});
  Row second = Element("B");
  second.prev_name = "X";
  Add(level, second);
  EXPECT_EQ(RowAt(level.rows, 2).prev_name, "X");
}

TEST(ModelAdd, NumberOfTheRowBeforeMustBeANumber) {
  const struct {
    const char* number;
    int failure;
  } rows[] = {{"7", 0},
              {"x", kTypeMismatch},
              {" ", kTypeMismatch},
              {"2147483647", kOverflow},
              {"1e10", kOverflow}};
  for (const auto& row : rows) {
    Row first = Element("A", "", "", kNew);
    first.pos_nr = row.number;
    Level level = LevelOf(2, {first});
    EXPECT_EQ(FailureOf([&] { Add(level, Element("A")); }), row.failure) << row.number;
  }
}

TEST(ModelAdd, ThroughALevelClass) {
  Level level(2);
  AddToLevel(level, Element("[Object]"), LineType::kSection);
  AddToLevel(level, Element("[Object]", "k"), LineType::kSection);
  AddToLevel(level, Element("Width=10"), LineType::kProperty);
  EXPECT_EQ(Keys(level.rows), "[Object] k Width");
  EXPECT_EQ(RowAt(level.rows, 3).value, "10");
  EXPECT_EQ(RowAt(level.rows, 3).child->number, 3);
  const auto given = NewLevel(3);
  Row with_child = Element("A=1");
  with_child.child = given;
  AddToLevel(level, with_child, LineType::kProperty);
  EXPECT_EQ(LastElement(level), given);
  Level last(9);
  AddToLevel(last, Element("A=1"), LineType::kProperty);
  EXPECT_EQ(LastElement(last)->number, 9);
}

TEST(ModelTree, LastElementFailures) {
  Level level(0);
  EXPECT_EQ(FailureOf([&] { LastElement(level); }), kObjectNotSet);
  level.rows = ArrayOf({});
  EXPECT_EQ(FailureOf([&] { LastElement(level); }), kSubscriptOutOfRange);
  level.rows = ArrayOf({Element("A")});
  EXPECT_EQ(LastElement(level), nullptr);
}

TEST(ModelReading, Trees) {
  const struct {
    const char* what;
    Lines lines;
    const char* dump;
  } rows[] = {
      {"blank lines are ignored", {"\t \t", " "}, ""},
      {"tabs go, inside name and value too",
       {"[A]", "\t Wi\tdth = \t5\t6 "},
       "- [A]|[A]|||||||||\n"
       "  - Width|Width||||||||| 56\n"},
      {"[@Lines] stands at level 1",
       {"[Object]", "Name=A", "[@Lines]", "Width=5"},
       "- [Object]|[Object]|||||||||\n"
       "  - Name|Name|||||[@Lines]|[@Lines]|||A\n"
       "  - [@Lines]|[@Lines]||Name|Name||Width|Width|||\n"
       "  - Width|Width||[@Lines]|[@Lines]||||||5\n"},
      {"a block hangs below the property before it",
       {"[A]", "X=1", "{", "[B]", "Y=2", "}", "[C]"},
       "- [A]|[A]|||||[C]|[C]|||\n"
       "  - X|X|||||||||1\n"
       "    - [B]|[B]|||||Y|Y|||\n"
       "    - Y|Y||[B]|[B]||||||2\n"
       "- [C]|[C]||[A]|[A]||||||\n"},
      {"below level 0 everything is dropped",
       {"[A]", "X=1", "}", "}", "Y=2", "[B]", "{", "Z=3"},
       "- [A]|[A]|||||||||\n"
       "  - X|X|||||Z|Z|||1\n"
       "  - Z|Z||X|X||||||3\n"},
      {"a section block directly below a top section ends below level 0",
       {"[A]", "{", "[B]", "}", "[C]", "X=1"},
       "- [A]|[A]|||||[B]|[B]|||\n"
       "- [B]|[B]||[A]|[A]||||||\n"},
      {"owner and its neighbour get the value",
       {"[Layer]", "[Object]", "ObjectName=Text1", "LinkID=7"},
       "- [Layer]|[Layer]|||||[Object]|7|Text1||\n"
       "- [Object]|7|Text1|[Layer]|[Layer]||||||\n"
       "  - ObjectName|ObjectName|||||LinkID|LinkID|||Text1\n"
       "  - LinkID|LinkID||ObjectName|ObjectName||||||7\n"},
      {"a difference line is classified without its description",
       {"N(Key=7:Typ=t:PrevName=[A]:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=2);[B]",
        "U;Width=5", "D;User3=@T;x"},
       "N [B]|7|t|[A]||||||2|\n"
       "  U Width|Width|||||||||5\n"
       "  D User|@T|||||||||x\n"},
      {"a description without text is an element without name",
       {"[A]", "N;"},
       "- [A]|[A]|||||||||\n"
       "  N ||||||||||\n"},
      {"a brace behind a description is a brace",
       {"[A]", "X=1", "N;{", "Y=2"},
       "- [A]|[A]|||||||||\n"
       "  - X|X|||||||||1\n"
       "    - Y|Y|||||||||2\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(DumpOf(row.lines), row.dump) << row.what;
}

TEST(ModelReading, DeeperThanTenLevelsIsDropped) {
  const Array tree = ReadLines(Below(9, {"A=1", "{", "B=2", "[C]", "}", "D=3"}));
  EXPECT_EQ(Names(RowsBelow(tree, 9)), "A D");
}

TEST(ModelReading, Failures) {
  const struct {
    const char* what;
    Lines lines;
    int failure;
  } rows[] = {
      {"a property before any section", {"A=1"}, kObjectNotSet},
      {"a double brace without an older section", {"[A]", "X=1", "{", "{", "Y=2"}, kObjectNotSet},
      {"a double brace below an older section",
       {"[A]", "X=1", "{", "Y=2", "}", "Z=3", "{", "{", "Y=2"},
       0},
      {"a number that is none before an element of the same name",
       {"[A]", "N(::::::::x);B=1", "B=2"},
       kTypeMismatch},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureOf([&] { ReadLines(row.lines); }), row.failure) << row.what;
  }
}

TEST(ModelReading, DoubleBraceHangsBelowAnOlderSection) {
  const Array tree = ReadLines({"[A]", "X=1", "{", "Y=2", "}", "Z=3", "{", "{", "W=4"});
  const Array properties = RowAt(tree, 1).child->rows;
  EXPECT_EQ(Names(properties), "X Z");
  const Array below_x = RowAt(properties, 1).child->rows;
  EXPECT_EQ(Names(RowAt(below_x, 1).child->rows), "W");
}

TEST(ModelReading, KeysOfOwners) {
  const struct {
    const char* what;
    int level;  // of the list whose keys are looked at
    Lines lines;
    const char* keys;
  } rows[] = {
      {"Visible before LayerID", 0, {"[Layer]", "Visible=1", "LayerID=3"}, "3"},
      {"another property before LayerID", 0, {"[Layer]", "Width=1", "LayerID=3"}, "[Layer]"},
      {"Visible in other letters", 0, {"[Layer]", "visible=1", "LayerID=3"}, "[Layer]"},
      {"LayerID of an object", 0, {"[Object]", "Visible=1", "LayerID=3"}, "[Object]"},
      {"the nearest layer before",
       0,
       {"[Layer]", "[layer]", "[Object]", "Visible=1", "LAYERID=3"},
       "[Layer] 3 [Object]"},
      {"LinkID", 0, {"[Object]", "[Object]", "linkid=4"}, "[Object] 4"},
      {"ObjectName is no key", 0, {"[Object]", "ObjectName=4"}, "[Object]"},
      {"Text of a line", 3, Below(3, {"[Line]", "[Other]", "{", "TEXT=a", "}"}), "a [Other]"},
      {"Text may be empty", 3, Below(3, {"[Line]", "{", "Text=", "}"}), ""},
      {"Text at another level", 4, Below(4, {"[Line]", "{", "Text=a", "}"}), "[Line]"},
      {"LineID of a line", 5, Below(5, {"[Line]", "[Line]", "{", "LineID=4", "}"}), "[Line] 4"},
      {"Text of a column", 7, Below(7, {"[Column]", "{", "Text=a", "}"}), "a"},
      {"Contents of a column", 7, Below(7, {"[Column]", "{", "[In]", "{", "Contents=c", "}", "}"}),
       "c"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Keys(RowsBelow(ReadLines(row.lines), row.level)), row.keys) << row.what;
  }
}

TEST(ModelReading, AddFieldValue) {
  ReportFile file;
  for (const char* line : {"[Object]", "[Layer]", "A=1"}) file.AddLine(line);
  const std::string before = Dump(file.report_file());
  file.AddFieldValue("[None]", 0, &Row::key, "x");
  file.AddFieldValue("[Layer]", 3, &Row::key, "x");
  EXPECT_EQ(Dump(file.report_file()), before);
  file.AddFieldValue("[object]", 0, &Row::key, "x");
  EXPECT_EQ(Keys(file.report_file()), "x [Layer]");
  EXPECT_EQ(RowAt(file.report_file(), 1).next_key, "[Layer]");
}

TEST(ModelWriting, RowsWithBraces) {
  const struct {
    const char* what;
    std::vector<WriteRow> rows;
    Lines lines;
  } rows[] = {
      {"nothing", {}, {}},
      {"a block",
       {{0, "[A]"}, {1, "X=1"}, {2, "[B]"}, {2, "Y=2"}, {0, "[C]"}},
       {"[A]", " X=1", "  {", "  [B]", "  Y=2", "  }", "[C]"}},
      {"two sections in a row", {{2, "[P]"}, {2, "[Q]"}}, {"[P]", "   {", "   }", "  [Q]", "  }"}},
      {"two sections in a row on the way up",
       {{0, "[A]"}, {1, "X=1"}, {2, "X=1"}, {3, "[P]"}, {2, "[Q]"}},
       {"[A]", " X=1", "  {", "  X=1", "   {", "   [P]", "\t{", "\t}", "   }", "  [Q]", "  }"}},
      {"a jump of two levels writes one brace and closes two",
       {{1, "X=1"}, {3, "Y=2"}, {1, "Z=3"}},
       {"X=1", "   {", "   Y=2", "   }", "  }", " Z=3"}},
      {"open levels are closed at the end",
       {{0, "[A]"}, {1, "X=1"}, {3, "Y=2"}},
       {"[A]", " X=1", "   {", "   Y=2", "   }", "  }"}},
      {"sections with descriptions get no empty block",
       {{2, "N;[P]"}, {2, "N;[Q]"}},
       {"N;[P]", "  N;[Q]", "  }"}},
      {"tabs from level 4 on",
       {{4, "a"}, {4, "b"}, {5, "c"}},
       {"a", "\tb", "\t {", "\t c", "\t }", "\t}", "   }", "  }"}},
  };
  for (const auto& row : rows) {
    ReportFile file;
    file.set_write_array(std::make_shared<std::vector<WriteRow>>(row.rows));
    Lines lines;
    for (auto line = file.GetFirstLine(); !line.empty(); line = file.GetNextLine()) {
      lines.push_back(line);
    }
    EXPECT_EQ(lines, row.lines) << row.what;
  }
  EXPECT_EQ(FailureOf([] { ReportFile().GetNextLine(); }), kObjectNotSet);
  EXPECT_EQ(LevelToSpaceString(0), "");
  EXPECT_EQ(LevelToSpaceString(5), "\t ");
  EXPECT_EQ(LevelToSpaceString(9), "\t\t ");
}

TEST(ModelWriting, TextsOfElements) {
  const struct {
    Row element;
    const char* text;
  } rows[] = {
      {Element("Width", "WIDTH", "5"), "WIDTH=5"},
      {Element("User", "@Total", "Sum(Price)"), "User=@Total;Sum(Price)"},
      {Element(" ", "k", "5"), "k=5"},
      {Element("", " ", "5"), ""},
      {Element("A", "", "5"), "A=;5"},
      {Element("[Line", "[Line", ""), "[Line="},
      {Element("[Line]", "7", "x"), "[Line]"},
      {Element("A", "A", "1", kDelete),
       "D(Key=A:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);A=1"},
  };
  for (const auto& row : rows) {
    Level level(2);
    level.rows = ArrayOf({row.element});
    WriteArray lines;
    PrepareWriting(level, lines);
    ASSERT_EQ(lines->size(), 1u);
    EXPECT_EQ(lines->front().text, row.text);
    EXPECT_EQ(lines->front().level, 2);
  }
  Level empty(2);
  WriteArray lines;
  PrepareWriting(empty, lines);
  empty.rows = ArrayOf({});
  PrepareWriting(empty, lines);
  EXPECT_EQ(lines, nullptr);
}

TEST(ModelWriting, FilesComeBack) {
  const struct {
    const char* what;
    Lines in, out;
  } rows[] = {
      {"a name alone gets an equals sign", {"[A]", "Foo"}, {"[A]", " Foo="}},
      {"a plain User gets a number", {"[A]", "User=abc"}, {"[A]", " User1=User;abc"}},
      {"variables are numbered through",
       {"[A]", "User7=@a;1", "User7=@b;2", "sum9=@c;3", "Other=x", "User1=@d;4"},
       {"[A]", " User1=@a;1", " User2=@b;2", " Sum3=@c;3", " Other=x", " User4=@d;4"}},
      {"columns are counted",
       Below(7, {"Columns=9", "[Column]", "{", "A=1", "}", "[column]", "{", "A=1"}),
       {"[Object]",  " [@Lines]",  "  {",      "  [Part]",       "   {",
        "   [Line]", "\t{",        "\t[Part]", "\t {",           "\t [Line]",
        "\t  {",     "\t  [Part]", "\t   {",   "\t   Columns=2", "\t   [Column]",
        "\t\t{",     "\t\tA=1",    "\t\t}",    "\t   [column]",  "\t\t{",
        "\t\tA=1",   "\t\t}",      "\t   }",   "\t  }",          "\t }",
        "\t}",       "   }",       "  }"}},
      {"an empty block between sections",
       {"[A]", "X=1", "{", "[B]", "{", "}", "[C]", "}"},
       {"[A]", " X=1", "  {", "  [B]", "   {", "   }", "  [C]", "  }"}},
      {"braces around the properties of a section are not needed",
       {"[A]", "{", "X=1", "}"},
       {"[A]", " X=1"}},
  };
  for (const auto& row : rows) EXPECT_EQ(WriteLines(ReadLines(row.in)), row.out) << row.what;
}

TEST(ModelWriting, RenumberingRows) {
  const Array variables = ArrayOf(
      {Element("User"), Element("USER"), Element("Sum"), Element("Other"), Element("User")});
  UpdateVariableNumbers(variables);
  EXPECT_EQ(Names(variables), "User1 USER2 Sum3 Other User4");
  const Array columns =
      ArrayOf({Element("[Column]"), Element("Columns"), Element("[column]"), Element("columns")});
  UpdatePropertyColumns(columns);
  EXPECT_EQ(RowAt(columns, 2).value, "2");
  EXPECT_EQ(RowAt(columns, 4).value, "");
  UpdateVariableNumbers(nullptr);
  UpdatePropertyColumns(nullptr);
}

TEST(ModelCompare, OneSideEmpty) {
  const Row child_a = [] {
    Row row = Element("[A]", "k", "old value");
    row.child = NewLevel(2);
    return row;
  }();
  for (int status : {kNew, kDelete}) {
    const Array rows = ArrayOf({child_a, Element("B"), Element("C")});
    const Array none = status == kNew ? nullptr : ArrayOf({});
    Level level(1);
    EXPECT_TRUE(status == kNew ? CheckForAddingAllElements(level, none, rows)
                               : CheckForAddingAllElements(level, rows, none));
    const std::string sign = StatusToLetter(status);
    EXPECT_EQ(Dump(level),
              sign + " [A]|k|||||||||[A]\n" + sign + " B||||||||||B\n" + sign + " C||||||||||C\n");
    EXPECT_EQ(RowAt(level.rows, 1).child != nullptr, status == kNew);
    EXPECT_TRUE(IsArrayEmpty(rows));
  }
  Level level(1);
  EXPECT_FALSE(CheckForAddingAllElements(level, ArrayOf({child_a}), ArrayOf({child_a})));
  Compare(level, nullptr, ArrayOf({}));
  EXPECT_EQ(level.rows, nullptr);
}

TEST(ModelCompare, Files) {
  const struct {
    const char* what;
    Lines old_lines, new_lines;
    const char* dump;
  } rows[] = {
      {"nothing differs", {"[A]", "X=a"}, {"[a]", "x=A"}, ""},
      {"a value",
       {"[A]", "X=1", "Y=1"},
       {"[A]", "X=1", "Y=2"},
       "U [A]|[A]|||||||||\n"
       "  U Y|Y||X|X||||||2\n"},
      {"a moved element is none", {"[A]", "X=1", "Y=1"}, {"[A]", "Y=1", "X=1"}, ""},
      {"new and gone",
       {"[A]", "X=1"},
       {"[A]", "Y=1"},
       "U [A]|[A]|||||||||\n"
       "  N Y|Y|||||||||1\n"
       "  D X|X|||||||||1\n"},
      {"a section that became empty loses its contents",
       {"[A]", "X=1"},
       {"[A]"},
       "U [A]|[A]|||||||||\n"
       "  D X|X|||||||||X\n"},
      {"one of two equal elements gone is not seen", {"[A]", "X=1", "X=1"}, {"[A]", "X=1"}, ""},
      {"a changed block below a property",
       {"[A]", "X=1", "{", "Y=1", "}"},
       {"[A]", "X=1", "{", "Y=2", "}"},
       "U [A]|[A]|||||||||\n"
       "  U X|X|||||||||1\n"
       "    U Y|Y|||||||||2\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Dump(CompareReports(ReadLines(row.old_lines), ReadLines(row.new_lines))), row.dump)
        << row.what;
  }
}

TEST(ModelCompare, MissingElementsKeepTheirPairing) {
  Level level(2);
  const Array source =
      ArrayOf({Element("A"), Element("B"), Element("C"), Element("D"), Element("b")});
  CheckMissingElements(level, source, ArrayOf({Element("c"), Element("a")}), kNew);
  EXPECT_EQ(Names(level.rows), "B D b");
  EXPECT_EQ(Names(source), "A C");
}

TEST(ModelCompare, ElementsThatAreNotThere) {
  Level level(6);
  const Array old_rows = ArrayOf({Element("A", "A", "1")});
  const Array new_rows = ArrayOf({Element("X", "X"), Element("A", "A", "2")});
  EXPECT_EQ(CompareElements(level, old_rows, new_rows, -1), 1);
  EXPECT_EQ(Dump(level), "U A|A|||||||||2\n");
  EXPECT_EQ(FailureOf([&] { CompareElements(level, old_rows, old_rows, 7); }), kObjectNotSet);
}

Lines Keyed(const std::string& header, const std::string& property, const Lines& keys) {
  Lines lines;
  for (const std::string& key : keys) {
    for (const std::string& line :
         {header, std::string("{"), property + "=" + key, std::string("}")}) {
      lines.push_back(line);
    }
  }
  return lines;
}

Lines Columns(const Lines& keys) {
  Lines lines = Keyed("[Column]", "Text", keys);
  lines.insert(lines.begin(), "Columns=" + std::to_string(keys.size()));
  return lines;
}

TEST(ModelCompare, Runs) {
  const struct {
    const char* what;
    Lines old_keys, new_keys;
    const char* found;
  } rows[] = {
      {"equal", {"a", "b"}, {"a", "b"}, ""},
      {"one more in the middle", {"a", "c"}, {"a", "b", "c"}, "N:b"},
      {"one more at the end", {"a"}, {"a", "b"}, "N:b"},
      {"one less", {"a", "b", "c"}, {"a", "c"}, "D:b"},
      {"two exchanged are both replaced", {"a", "b"}, {"b", "a"}, "N:b D:a N:a D:b"},
      {"one replaced", {"a", "b", "c"}, {"a", "x", "c"}, "N:x D:b"},
      {"a surplus stops at its number", {"a", "b"}, {"x", "b", "a"}, "N:x N:b D:a N:a D:b"},
      {"an empty key at the end is no surplus", {"a"}, {"a", ""}, ""},
      {"old before new when fewer are left", {"a", "b", "c"}, {"x", "c"}, "D:a N:x D:b"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DifferenceAt(3, Keyed("[Line]", "Text", row.old_keys),
                           Keyed("[Line]", "Text", row.new_keys)),
              row.found)
        << row.what;
    EXPECT_EQ(DifferenceAt(7, Columns(row.old_keys), Columns(row.new_keys)), row.found) << row.what;
  }
  EXPECT_EQ(
      DifferenceAt(5, Keyed("[Line]", "LineID", {"a", "b"}), Keyed("[Line]", "LineID", {"b", "a"})),
      "");
}

TEST(ModelCompare, MaintainedNumbersAreNoDifference) {
  EXPECT_EQ(DifferenceAt(6, {"LineID=1", "A=1"}, {"lineid=2", "A=2"}), "U:A");
  EXPECT_EQ(DifferenceAt(7, {"Columns=1", "[Column]"}, {"Columns=2", "[Column]"}), "");
  EXPECT_EQ(DifferenceAt(8, {"Columns=1"}, {"Columns=2"}), "U:Columns");
}

TEST(ModelConvert, PlaceOfANewElement) {
  const struct {
    const char* what;
    const char *previous, *next, *number;
    const char* names;
  } rows[] = {
      {"after the element before", "A", "C", "", "A N B C"},
      {"before the element behind", "x", "B", "", "A N B C"},
      {"at its number", "x", "x", "1", "A B C N"},
      {"nowhere", "x", "x", "", "A B C N"},
      {"after the last", "C", "", "", "A B C N"},
  };
  for (const auto& row : rows) {
    Level level = LevelOf(2, {Element("A"), Element("B"), Element("C")});
    Row element = Element("N", "N", "v");
    element.prev_name = row.previous;
    element.next_name = row.next;
    element.pos_nr = row.number;
    InsertElement(level, element);
    EXPECT_EQ(Names(level.rows), row.names) << row.what;
    InsertElement(level, element);
    EXPECT_EQ(Count(level.rows), 4) << row.what;
  }
}

TEST(ModelConvert, PlaceByNumber) {
  const struct {
    const char *number, *keys;
  } rows[] = {{"1", "x n 1 2 y"},  {"2", "x 1 n 2 y"},  {"3", "x 1 2 n y"},
              {"4", "x 1 2 y n"},  {"99", "x 1 2 y n"}, {"0", "n x 1 2 y"},
              {"-1", "x 1 2 y n"}, {" ", "x 1 2 y n"},  {"1,5", "x 1 n 2 y"}};
  for (const auto& row : rows) {
    Level level =
        LevelOf(2, {Element("X", "x"), Element("N", "1"), Element("N", "2"), Element("Y", "y")});
    Row element = Element("N", "n");
    element.prev_name = "none";
    element.next_name = "none";
    element.pos_nr = row.number;
    InsertElement(level, element);
    EXPECT_EQ(Keys(level.rows), row.keys) << row.number;
  }
  Level level = LevelOf(2, {Element("N", "1")});
  Row element = Element("N", "n");
  element.pos_nr = "x";
  EXPECT_EQ(FailureOf([&] { InsertElement(level, element); }), kTypeMismatch);
}

TEST(ModelConvert, AppendedRowsHavePositionsInsertedOnesHaveNot) {
  Level level = LevelOf(2, {Element("A"), Element("B")});
  Row element = Element("N");
  element.prev_name = "A";
  InsertElement(level, element);
  element = Element("M");
  element.prev_name = "B";
  InsertElement(level, element);
  EXPECT_EQ(Dump(level), "- A||||||B||||\n- N||||||||||\n- B|||A|||M||||\n- M|||B|||||||\n");
}

TEST(ModelConvert, DeletesAndUpdatesCrosswise) {
  Row first = Element("A", "k", "1");
  first.next_key = "n";
  Row second = Element("A", "k", "2");
  second.next_key = "m";
  Row wanted = Element("A", "k", "new");
  wanted.next_name = "m";
  wanted.next_key = "n";
  Level level(2);
  level.rows = ArrayOf({first, second});
  UpdateElement(level, wanted);
  EXPECT_EQ(RowAt(level.rows, 2).value, "new");
  DeleteElement(level, wanted);
  EXPECT_EQ(RowAt(level.rows, 1).value, "1");
  DeleteElement(level, Element("other"));
  EXPECT_EQ(Count(level.rows), 1);
}

TEST(ModelConvert, Order) {
  const Array rows = ArrayOf({Element("a", "", "", kUnknown), Element("b", "", "", kUpdate),
                              Element("c", "", "", kNew), Element("d", "", "", kUpdate),
                              Element("e", "", "", kDelete), Element("f", "", "", kNew)});
  PrepareConversion(rows);
  EXPECT_EQ(Names(rows), "e c f b d a");
  PrepareConversion(nullptr);
}

TEST(ModelConvert, LinesAreRenumbered) {
  Level level = LevelOf(5, {Element("[Line]", "a"), Element("[line]", "b"), Element("X", "x"),
                            Element("[Line]", "c")});
  RowAt(level.rows, 4).child = NewLevel(6);
  Add(*RowAt(level.rows, 4).child, Element("A"));
  Add(*RowAt(level.rows, 4).child, Element("lineid", "lineid", "9"));
  UpdatePropertyLineID(level, 2, 5);
  EXPECT_EQ(Dump(level),
            "- [Line]|a|||||[line]|5||1|\n"
            "- [line]|5||[Line]|a||X|x||2|\n"
            "- X|x||[line]|5||[Line]|6|||\n"
            "- [Line]|6||X|x||||||\n"
            "  - A||||||lineid|lineid|||\n"
            "  - lineid|lineid||A|||||||6\n");
  UpdatePropertyLineID(level, 0, 1);
  EXPECT_EQ(Keys(level.rows), "a 5 x 6");
}

TEST(ModelConvert, NewLinePushesTheNumbersBehindIt) {
  const struct {
    const char* what;
    Lines keys;
    Row element;
    int failure;
    const char* result;
  } rows[] = {
      {"in the middle", {"3", "4", "9"}, Element("[line]", "4"), 0, "3 5 6 4"},
      {"a key that is not there", {"3", "5"}, Element("[Line]", "4"), 0, "3 5 4"},
      {"an empty key counts as 0", {""}, Element("[Line]", ""), 0, "1 "},
      {"a key that is no number", {"x"}, Element("[Line]", "x"), kTypeMismatch, "x"},
      {"no number, but not there either", {"1"}, Element("[Line]", "x"), 0, "1 x"},
  };
  for (const auto& row : rows) {
    Rows lines;
    for (const std::string& key : row.keys) lines.push_back(Element("[Line]", key));
    Row element = row.element;
    element.status = kNew;
    Level level(5);
    EXPECT_EQ(FailureOf([&] { Convert(level, ArrayOf(lines), ArrayOf({element})); }), row.failure)
        << row.what;
    EXPECT_EQ(Keys(level.rows), row.result) << row.what;
  }
}

TEST(ModelConvert, Files) {
  const struct {
    const char* what;
    Lines report, diff, result;
  } rows[] = {
      {"all three kinds",
       {"[A]", "X=1", "Y=2", "Own=3"},
       {"U;[A]", "U;Y=9",
        "N(Key=Z:Typ=:PrevName=X:PrevKey=X:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);Z=4",
        "D;X"},
       {"[A]", " Y=9", " Own=3", " Z=4"}},
      {"nothing goes into an empty level", {"[A]"}, {"U;[A]", "N;X=1"}, {"[A]"}},
      {"a level emptied by the difference itself still takes insertions",
       {"[A]", "X=1"},
       {"U;[A]", "N;Y=1", "D;X"},
       {"[A]", " Y=1"}},
      {"below a bare line nothing is applied", {"[A]", "X=1"}, {"[A]", "U;X=2"}, {"[A]", " X=1"}},
      {"changes below a property are not applied",
       {"[A]", "X=1", "{", "Y=1", "}"},
       {"U;[A]", "U;X=5", "{", "U;Y=2", "}"},
       {"[A]", " X=5", "  {", "  Y=1", "  }"}},
      {"a new section brings its contents", {"[A]"}, {"N;[B]", "X=1"}, {"[A]", "[B]", " X=1"}},
  };
  for (const auto& row : rows) {
    const Array report = ReadLines(row.report);
    ConvertReport(report, ReadLines(row.diff));
    EXPECT_EQ(WriteLines(report), row.result) << row.what;
  }
}

TEST(ModelConvert, SectionsWithoutALevelObject) {
  Level level(0);
  level.rows = ArrayOf({Element("[A]")});
  UpdateElement(level, Element("[A]"));
  RowAt(level.rows, 1).child = NewLevel(1);
  EXPECT_EQ(FailureOf([&] { UpdateElement(level, Element("[A]")); }), kObjectNotSet);
}

class ModelProperties : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::printf("TESSARY_SEED=%llu\n", static_cast<unsigned long long>(Seed()));
  }
  // Which input it was, for messages.
  static std::string Where(const Lines& lines) {
    return "TESSARY_SEED=" + std::to_string(Seed()) + "\n" + Text(lines);
  }
  Random random_{Seed()};
};

TEST_F(ModelProperties, WritingIsStableFromTheSecondPassOn) {
  for (int n = 0; n < 500; ++n) {
    const Lines report = RandomReport(random_, 120);
    Lines once;
    if (FailureOf([&] { once = WriteLines(ReadLines(report)); }) != 0) continue;
    const bool nameless = std::any_of(once.begin(), once.end(), [](const std::string& line) {
      return TrimBlanks(SplitProperty(line).name).empty();
    });
    if (nameless) continue;
    Lines twice, thrice;
    if (FailureOf([&] { twice = WriteLines(ReadLines(once)); }) != 0) continue;
    thrice = WriteLines(ReadLines(twice));
    EXPECT_EQ(twice, thrice) << Where(report);
  }
}

TEST_F(ModelProperties, AReportHasNothingNewAgainstItself) {
  for (int n = 0; n < 300; ++n) {
    const Lines report = RandomReport(random_, 150);
    if (FailureOf([&] { ReadLines(report); }) != 0) continue;
    const Array differences = CompareReports(ReadLines(report), ReadLines(report));
    // Elements that are equal up to their contents may be paired across.
    for (int row = 1; row <= Count(differences); ++row) {
      EXPECT_EQ(RowAt(differences, row).status, kUpdate) << Where(report);
    }
  }
}

TEST_F(ModelProperties, DescriptionsComeBack) {
  for (int n = 0; n < 2000; ++n) {
    Row element = RandomRow(random_);
    element.name = "A=1";
    element.status = random_.Below(3);
    element.value.clear();
    const Row read = DiffTextToElement(ElementToDiffText(element) + element.name);
    EXPECT_EQ(Dump(ArrayOf({read})), Dump(ArrayOf({element})));
  }
}

// The generators are only worth something when they come everywhere.
TEST_F(ModelProperties, GeneratorsReachTheRules) {
  std::set<std::string> seen;
  std::function<void(const Array&, int)> note = [&](const Array& rows, int level) {
    if (IsArrayEmpty(rows)) return;
    const std::string at = std::to_string(level);
    seen.insert("level " + at);
    for (const Row& row : *rows) {
      seen.insert(at + StatusToLetter(row.status));
      if (IsSectionLine(row.name) && row.key != row.name) seen.insert(at + " keyed");
      if (!row.typ.empty()) seen.insert(at + " typed");
      if (row.key.starts_with('@')) seen.insert(at + " variable");
      if (row.child) note(row.child->rows, level + 1);
    }
  };
  const auto note_lines = [&](const Lines& lines) {
    const int failure = FailureOf([&] { note(ReadLines(lines), 0); });
    seen.insert("failure " + std::to_string(failure));
  };
  for (int n = 0; n < 400; ++n) {
    const Lines report = RandomReport(random_, 10 + random_.Below(150));
    note_lines(report);
    const Lines changed = Changed(random_, report, random_.Below(8));
    const Lines copy = Changed(random_, report, random_.Below(8));
    FailureOf([&] {
      const Array differences = CompareReports(ReadLines(report), ReadLines(changed));
      const Lines written = WriteLines(differences);
      note(differences, 0);
      ConvertReport(ReadLines(copy), ReadLines(written));
      seen.insert("converted");
    });
    note_lines(RandomDiffFile(random_, 60));
  }
  for (const char* rule :
       {"level 9", "0 keyed", "0 typed", "1 variable", "3 keyed",   "5 keyed",    "7 keyed",  "0N",
        "0D",      "0U",      "3N",      "3D",         "3U",        "5N",         "5D",       "5U",
        "7N",      "7D",      "7U",      "9U",         "failure 0", "failure 91", "converted"}) {
    EXPECT_TRUE(seen.count(rule)) << rule;
  }
}

TEST_F(ModelProperties, RandomLinesNeverDoMoreThanFail) {
  for (int n = 0; n < 2000; ++n) {
    Lines lines;
    for (int more = random_.Below(12); more > 0; --more) {
      lines.push_back(random_.Chance(50) ? RandomLine(random_) : RandomDiffLine(random_));
    }
    const int failure = FailureOf([&] { WriteLines(ReadLines(lines)); });
    const std::set<int> allowed = {0, kOverflow, kTypeMismatch, kObjectNotSet};
    EXPECT_TRUE(allowed.count(failure)) << failure << Where(lines);
  }
}

TEST_F(ModelProperties, FindingDependsOnNameKeyAndTypeAlone) {
  for (int n = 0; n < 2000; ++n) {
    const Array rows = RandomRows(random_, random_.Below(12));
    const Row wanted = RandomRow(random_);
    const auto matches = [&](const Row& row) {
      return EqualsIgnoreCase(row.name, wanted.name) && EqualsIgnoreCase(row.key, wanted.key) &&
             EqualsIgnoreCase(row.typ, wanted.typ);
    };
    const int found = FindElement(rows, wanted);
    EXPECT_EQ(found > 0, std::any_of(rows->begin(), rows->end(), matches)) << Dump(rows);
    if (found > 0) {
      EXPECT_TRUE(matches(RowAt(rows, found))) << Dump(rows);
    }
  }
}

TEST(ModelGenerators, SmallListsOfRunsCompareAndConvert) {
  for (int level : {3, 5, 7}) {
    std::vector<Lines> tails;
    ForEachReport(TinyAlphabetAt(level), 2, [&](const Lines& tail) { tails.push_back(tail); });
    for (std::size_t old = 0; old < tails.size(); ++old) {
      for (std::size_t n = old % kRoundsPart; n < tails.size(); n += kRoundsPart) {
        const Lines& old_tail = tails[old];
        const Lines& new_tail = tails[n];
        const int failure = FailureOf([&] {
          const Array report = ReadLines(Below(level, old_tail));
          const Array differences =
              CompareReports(ReadLines(Below(level, old_tail)), ReadLines(Below(level, new_tail)));
          ConvertReport(report, ReadLines(WriteLines(differences)));
        });
        // New lines without a number fail as soon as a second one meets the first.
        const bool allowed =
            failure == 0 || failure == kObjectNotSet || (failure == kTypeMismatch && level == 5);
        EXPECT_TRUE(allowed) << failure << "\n"
                             << Text(Below(level, old_tail)) << "\n"
                             << Text(new_tail);
      }
    }
  }
}

TEST(ModelGenerators, SmallReportsAreEnumerated) {
  int count = 0;
  std::set<std::string> different;
  ForEachReport(TinyAlphabet(), 3, [&](const Lines& lines) {
    ++count;
    different.insert(Text(lines));
  });
  const int size = static_cast<int>(TinyAlphabet().size());
  EXPECT_EQ(count, 1 + size + size * size + size * size * size);
  EXPECT_EQ(different.size(), static_cast<std::size_t>(count));
}

TEST(ModelGenerators, OpenToReachesItsLevel) {
  for (int level = 0; level <= 9; ++level) {
    const Array tree = ReadLines(Below(level, {level == 0 ? "[A]" : "A=1"}));
    EXPECT_EQ(Count(RowsBelow(tree, level)), 1) << level;
  }
}

}  // namespace
}  // namespace tessary::model
