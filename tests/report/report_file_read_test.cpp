// From lines to the tree.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/report_file.h"
#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

class ReportFileReadTest : public testing::Test {
 protected:
  void Read(const Lines& lines) {
    for (const std::string& line : lines) store_.AddLine(line);
  }
  std::vector<std::string> Tree() { return Brief(store_.ReportFile()); }
  std::int32_t FailureOf(const std::string& line) {
    return FailureNumber([&] { store_.AddLine(line); });
  }

  TestEngine engine_;
  BXReportFile store_{engine_.context};
};

// Every level in use: a section below the element of the level above.
Lines TenLevels() {
  Lines lines = {"[L0]", "L1=1"};
  for (int level = 2; level <= 9; ++level) {
    lines.push_back("{");
    lines.push_back("[L" + std::to_string(level) + "]");
  }
  return lines;
}

TEST_F(ReportFileReadTest, LinesMakeThisTree) {
  const struct {
    const char* name;
    Lines lines;
    Lines tree;
    std::int32_t level;
    std::int64_t dropped;
  } rows[] = {
      {"nothing", {}, {}, 0, 0},
      {"blank lines are ignored", {"", "   ", "\t", " \t \t "}, {}, 0, 0},
      {"a blank line leaves the level alone",
       {"[A]", "X=1", " \t ", "Y=2"},
       {"- [A]|[A]|", "  - X|X|1", "  - Y|Y|2"},
       1,
       0},
      {"tabs go everywhere, blanks at the ends",
       {"\t[A]\t", "\t \tWi\tdth = 1\t0 \t"},
       {"- [A]|[A]|", "  - Width|Width| 10"},
       1,
       0},
      {"blanks around a tab stay", {"[A]", "a \t b=c"}, {"- [A]|[A]|", "  - a  b|a  b|c"}, 1, 0},
      {"a carriage return is an ordinary character",
       {"[A]", "X=1\r"},
       {"- [A]|[A]|", "  - X|X|1\r"},
       1,
       0},
      {"so is a no-break space", {"[A]", "\u00A0"}, {"- [A]|[A]|", "  - \u00A0|\u00A0|"}, 1, 0},
      {"lines section below its section",
       {"[Object]", "Name=A", "[@Lines]", "Width=5"},
       {"- [Object]|[Object]|", "  - Name|Name|A", "  - [@Lines]|[@Lines]|", "  - Width|Width|5"},
       1,
       0},
      {"lines section in other case directly below",
       {"[Object]", "[@LINES]", "{", "[Line]"},
       {"- [Object]|[Object]|", "  - [@LINES]|[@LINES]|", "    - [Line]|[Line]|"},
       2,
       0},
      {"a section ends the properties",
       {"[A]", "X=1", "[B]", "Y=2"},
       {"- [A]|[A]|", "  - X|X|1", "- [B]|[B]|", "  - Y|Y|2"},
       1,
       0},
      {"a block below a property",
       {"[A]", "X=1", "{", "[B]", "Y=2", "}", "[C]"},
       {"- [A]|[A]|", "  - X|X|1", "    - [B]|[B]|", "    - Y|Y|2", "- [C]|[C]|"},
       0,
       0},
      {"sections inside a block stay at its level",
       {"[A]", "X=1", "{", "[B]", "[@Lines]", "[C]", "}"},
       {"- [A]|[A]|", "  - X|X|1", "    - [B]|[B]|", "    - [@Lines]|[@Lines]|", "    - [C]|[C]|"},
       1,
       0},
      {"empty blocks leave no trace",
       {"[A]", "X=1", "{", "}", "{", "}", "Y=2"},
       {"- [A]|[A]|", "  - X|X|1", "  - Y|Y|2"},
       1,
       0},
      {"braces with blanks and tabs",
       {"[A]", "X=1", " \t{ ", "Y=2", "\t}"},
       {"- [A]|[A]|", "  - X|X|1", "    - Y|Y|2"},
       1,
       0},
      {"braces with something else are properties",
       {"[A]", "{x", "}}", "{}"},
       {"- [A]|[A]|", "  - {x|{x|", "  - }}|}}|", "  - {}|{}|"},
       1,
       0},
      {"a block start first of all makes room for a lines section only",
       {"{", "}", "[A]"},
       {"- [A]|[A]|"},
       0,
       0},
      {"below level 0 every line is dropped",
       {"[A]", "X=1", "}", "}", "[B]", "Y=2", "{", "[C]", "Z=3"},
       {"- [A]|[A]|", "  - X|X|1", "- [C]|[C]|", "  - Z|Z|3"},
       1,
       2},
      {"a surplus block end at level 0", {"}", "[A]", "X=1"}, {}, -1, 2},
      {"a section block directly under a section",
       {"[A]", "{", "[B]", "{", "Y=2", "}", "}", "[C]", "V=4"},
       {"- [A]|[A]|", "- [B]|[B]|", "  - Y|Y|2"},
       -1,
       2},
      {"an empty one", {"[A]", "{", "[B]", "}", "[C]"}, {"- [A]|[A]|", "- [B]|[B]|"}, -1, 1},
      {"a line after two block starts hangs below an older section",
       {"[A]", "X=1", "[B]", "Y=1", "{", "Z=1", "}", "[C]", "{", "{", "W=1"},
       {"- [A]|[A]|", "  - X|X|1", "- [B]|[B]|", "  - Y|Y|1", "    - Z|Z|1", "    - W|W|1",
        "- [C]|[C]|"},
       2,
       0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    BXReportFile store(engine_.context);
    for (const std::string& line : row.lines) store.AddLine(line);
    EXPECT_EQ(Brief(store.ReportFile()), row.tree);
    EXPECT_EQ(store.level(), row.level);
    EXPECT_EQ(store.lines_dropped(), row.dropped);
  }
}

TEST_F(ReportFileReadTest, ThereIsNoArrayBeforeTheFirstElement) {
  EXPECT_FALSE(store_.ReportFile());
  store_.AddLine(" ");
  EXPECT_FALSE(store_.ReportFile());
  store_.AddLine("[A]");
  EXPECT_EQ(store_.ReportFile()->rows(), 1);
}

TEST_F(ReportFileReadTest, AnEleventhLevelIsDroppedUntilItsBlockEnds) {
  Lines lines = TenLevels();
  for (const char* line : {"{", "[L10]", "X=1", "{", "Y=2", "}", "Z=3", "}", "W=4"})
    lines.emplace_back(line);
  Read(lines);
  EXPECT_EQ(store_.level(), 9);
  EXPECT_EQ(store_.lines_dropped(), 4);
  const std::vector<std::string> tree = Tree();
  ASSERT_EQ(tree.size(), 11u);
  EXPECT_EQ(tree[9], std::string(18, ' ') + "- [L9]|[L9]|");
  EXPECT_EQ(tree[10], std::string(18, ' ') + "- W|W|4");
}

TEST_F(ReportFileReadTest, DifferenceLinesKeepTheirDescription) {
  const std::string description =
      "(Key=2:Typ=3:PrevName=4:PrevKey=5:PrevTyp=6:NextName=7:NextKey=8:NextTyp=9:PosNr=10);";
  Read({"N" + description + "[A]", " U" + description + " X=1 ", "D;[B]", "U;Y=2", "n;Z=3", "N;W"});
  EXPECT_EQ(Dump(store_.ReportFile()),
            "N [A]|2|3|4|5|6|7|8|9|10|\n"
            "  U X|X|3|4|5|6|7|8|9|10|1\n"
            "D [B]|[B]|||||||||\n"
            "  U Y|Y|||||n;Z|n;Z|||2\n"
            "  - n;Z|n;Z||Y|Y||||||3\n"
            "  N W|W|||||||||\n");
}

TEST_F(ReportFileReadTest, DescribedBracesMoveTheLevelToo) {
  Read({"U;[A]", "U;X=1", "U;{", "N;Y=2", "N;}", "D;Z=3"});
  EXPECT_THAT(Tree(), ElementsAre("U [A]|[A]|", "  U X|X|1", "    N Y|Y|2", "  D Z|Z|3"));
}

TEST_F(ReportFileReadTest, ADescriptionWithoutALineIsAPropertyWithoutAName) {
  Read({"[A]", "N;"});
  EXPECT_THAT(Tree(), ElementsAre("- [A]|[A]|", "  N ||"));
}

TEST_F(ReportFileReadTest, AColonInAFieldEmptiesAllNineFields) {
  Read({"N(Key=12:30:Typ=:PrevName=X:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);[A]"});
  EXPECT_EQ(Dump(store_.ReportFile()), "N [A]|[A]|||||||||\n");
}

class OwnerValueTest : public ReportFileReadTest {};

TEST_F(OwnerValueTest, AnObjectTakesItsNameAsTypeAndItsLinkAsKey) {
  Read({"[Page]", "[Object]", "ObjectName=Text1", "LinkID=7"});
  EXPECT_EQ(Dump(store_.ReportFile()),
            "- [Page]|[Page]|||||[Object]|7|Text1||\n"
            "- [Object]|7|Text1|[Page]|[Page]||||||\n"
            "  - ObjectName|ObjectName|||||LinkID|LinkID|||Text1\n"
            "  - LinkID|LinkID||ObjectName|ObjectName||||||7\n");
}

TEST_F(OwnerValueTest, AnOwnerInTheFirstRowHasNoRowBefore) {
  Read({"[Object]", "LinkID=7", "[Object]", "LinkID=8"});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("7", "8"));
  EXPECT_THAT(Column(store_.ReportFile(), bxeaPosNextKey), ElementsAre("8", ""));
  EXPECT_THAT(Column(store_.ReportFile(), bxeaPosPrevKey), ElementsAre("", "7"));
}

TEST_F(OwnerValueTest, TheNearestSectionOfTheNameAboveIsTheOwner) {
  Read({"[Object]", "X=1", "[OBJECT]", "[Other]", "LinkID=7"});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("[Object]", "7", "[Other]"));
}

TEST_F(OwnerValueTest, WithoutAnOwnerNothingChanges) {
  Read({"[Other]", "LinkID=7", "ObjectName=x", "[Third]", "LinkID=8"});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("[Other]", "[Third]"));
  EXPECT_THAT(Column(store_.ReportFile(), bxeaTyp), ElementsAre("", ""));
  EXPECT_THAT(Column(store_.ReportFile(), bxeaPosNextKey), ElementsAre("[Third]", ""));
}

TEST_F(OwnerValueTest, ALayerIsKeyedBehindVisible) {
  Read({"[Layer]", "Visible=1", "LayerID=3", "[Layer]", "Name=x", "LayerID=4", "[Layer]",
        "visible=1", "LayerID=5"});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("3", "[Layer]", "[Layer]"));
}

TEST_F(OwnerValueTest, AnEmptyValueTakesTheKeyAway) {
  Read({"[Object]", "LinkID="});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre(""));
}

// The lines that lead to level `level`, a section "[S<n>]" at each level on the way.
Lines Below(int level, const Lines& tail) {
  Lines lines = {"[S0]", "[@Lines]"};
  for (int n = 2; n <= level; ++n) {
    lines.push_back("{");
    if (n < level) lines.push_back("[S" + std::to_string(n) + "]");
  }
  lines.insert(lines.end(), tail.begin(), tail.end());
  return lines;
}

TEST_F(OwnerValueTest, DeeperLevelsHaveTheirOwnOwners) {
  const struct {
    const char* name;
    Lines lines;
    Lines keys;  // of the rows that the lines make at the first level that follows
    int level;
  } rows[] = {
      {"text of a line",
       Below(3, {"[Line]", "[Line]", "{", "Text=abc", "}"}),
       {"[Line]", "abc"},
       3},
      {"number of a line",
       Below(5, {"[Line]", "{", "LineID=5", "}", "[Line]", "{", "LineID=6", "}"}),
       {"5", "6"},
       5},
      {"text of a column",
       Below(7, {"Columns=1", "[Column]", "{", "Text=abc", "}"}),
       {"Columns", "abc"},
       7},
      {"contents of a column",
       Below(7, {"[Column]", "{", "[X]", "{", "Contents=abc", "}", "}"}),
       {"abc"},
       7},
      {"text at level 9 is nobody's",
       Below(7, {"[Column]", "{", "[X]", "{", "Text=abc", "}", "}"}),
       {"[Column]"},
       7},
      {"a line at another level is no owner",
       Below(4, {"[Line]", "{", "Text=abc", "}"}),
       {"[Line]"},
       4},
      {"last text wins", Below(3, {"[Line]", "{", "Text=a", "Text=b", "}"}), {"b"}, 3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    BXReportFile store(engine_.context);
    for (const std::string& line : row.lines) store.AddLine(line);
    Ref<ElementTable> table = store.ReportFile();
    for (int level = 0; level < row.level; ++level)
      table = table->Row(table->rows()).child->ElementArray();
    EXPECT_EQ(Column(table, bxeaKey), row.keys);
  }
}

TEST_F(OwnerValueTest, DifferenceFilesAreTreatedAlike) {
  Read({"U;[Object]", "U;LinkID=7",
        "N(Key=9:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);[Object]",
        "N;ObjectName=x"});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("7", "9"));
  EXPECT_THAT(Column(store_.ReportFile(), bxeaTyp), ElementsAre("", "x"));
}

TEST_F(OwnerValueTest, AnArrayThatWasChangedMeanwhileIsSearchedAnew) {
  Read({"[Object]", "LinkID=1", "[Object]", "LinkID=2", "[A]", "LinkID=3"});
  const Ref<ElementTable> table = store_.ReportFile();
  table->Delete(2);
  Read({"LinkID=4"});
  EXPECT_THAT(Column(table, bxeaKey), ElementsAre("4", "[A]"));
  table->SetText(2, bxeaName, engine_.context->pool()->Intern("[Object]"));
  Read({"LinkID=5"});
  EXPECT_THAT(Column(table, bxeaKey), ElementsAre("4", "5"));
  table->Insert(1, ElementOf(*engine_.context->pool(), SectionRow("[B]")));
  Read({"LinkID=6"});
  EXPECT_THAT(Column(table, bxeaKey), ElementsAre("[B]", "4", "6"));
}

class ReadFailureTest : public ReportFileReadTest {
 protected:
  static constexpr const char* kOwnMessage = "Fehler beim Auswerten einer Zeile.";
};

TEST_F(ReadFailureTest, APropertyWithoutASectionAboveIsError91) {
  EXPECT_EQ(FailureOf("X=1"), kObjectNotSet);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre("4 91 BXReportFile Prozedur: AddLine: "
                          "Objektvariable oder With-Blockvariable nicht festgelegt"));
  EXPECT_EQ(FailureOf("[@Lines]"), kObjectNotSet);
  EXPECT_EQ(store_.level(), 1);
}

TEST_F(ReadFailureTest, ALevelThatHasNoObjectIsError91) {
  Read({"[A]", "{", "{"});
  EXPECT_EQ(FailureOf("X=1"), kObjectNotSet);
  EXPECT_EQ(FailureOf("[B]"), kObjectNotSet);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(91, "BXReportFile Prozedur: AddLine")));
}

TEST_F(ReadFailureTest, AnElementThatHasNoChildLevelIsError91) {
  store_.SetReportFile(TableOf(engine_.context, {SectionRow("[A]")}));
  EXPECT_EQ(FailureOf("X=1"), kObjectNotSet);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(91, "BXReportFile Prozedur: AddLine")));
  Read({"[B]", "Y=2"});
  EXPECT_THAT(Tree(), ElementsAre("- [A]|[A]|", "- [B]|[B]|", "  - Y|Y|2"));
}

TEST_F(ReadFailureTest, AnArrayThatWasTakenAwayIsError91) {
  Read({"[A]"});
  store_.SetReportFile(nullptr);
  EXPECT_FALSE(store_.ReportFile());
  EXPECT_EQ(FailureOf("X=1"), kObjectNotSet);
}

TEST_F(ReadFailureTest, AnEmptiedArrayIsError9) {
  Read({"[A]"});
  store_.ReportFile()->DeleteAll();
  EXPECT_EQ(FailureOf("X=1"), kSubscriptOutOfRange);
  EXPECT_THAT(Entries(engine_.errors), ElementsAre(EntryText(9, "BXReportFile Prozedur: AddLine")));
}

TEST_F(ReadFailureTest, ANumberThatIsNoneFailsAtTheNextLineOfItsName) {
  const struct {
    const char* number;
    std::int32_t failure;
  } rows[] = {{"abc", kTypeMismatch}, {"2147483647", kOverflow}, {"1e10", kOverflow}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.number);
    BXReportFile store(engine_.context);
    store.AddLine("[A]");
    store.AddLine(std::string("N(:::::::: PosNr=") + row.number + ");X=1");
    EXPECT_EQ(FailureNumber([&] { store.AddLine("X=2"); }), row.failure);
    EXPECT_THAT(Entries(engine_.errors),
                ElementsAre(EntryText(row.failure, "BXLevelBasis Prozedur: CheckValuesAround"),
                            EntryText(row.failure, "BXLevel1 Prozedur: BXLevelBasis_Add",
                                      "Fehler beim Hinzufügen eines Elementes."),
                            EntryText(row.failure, "BXReportFile Prozedur: AddLine", kOwnMessage)));
  }
}

TEST_F(ReadFailureTest, ReadingGoesOnAfterAFailure) {
  EXPECT_EQ(FailureOf("X=1"), kObjectNotSet);
  Read({"[A]", "Y=2"});
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
  EXPECT_THAT(Tree(), ElementsAre("- [A]|[A]|", "  - Y|Y|2"));
}

TEST_F(ReadFailureTest, ABlankLineClearsEarlierEntries) {
  EXPECT_EQ(FailureOf("X=1"), kObjectNotSet);
  store_.AddLine("");
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

// A value that was found for a section while the property itself could not be added is handed out
// with the level's next property.
TEST_F(ReadFailureTest, AValueFoundBeforeAFailureIsHandedOutLater) {
  Read({"[Object]", "N(::::::::PosNr=abc);LinkID=1"});
  EXPECT_EQ(FailureOf("LinkID=2"), kTypeMismatch);
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("1"));
  Read({"Width=3"});
  EXPECT_THAT(Column(store_.ReportFile(), bxeaKey), ElementsAre("2"));
}

}  // namespace
}  // namespace tessary
