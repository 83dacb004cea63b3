// Levels whose lists are compared as a run, and those that leave out numbers the program keeps.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LevelRunsTest : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  Ref<ElementTable> Table(Rows rows) { return TableOf(engine_.context, rows); }
  RowTexts Row(std::string_view name, std::string_view key, std::string_view value = "") {
    return {.name = name, .key = key, .value = value, .child = engine_.context->CreateLevel(9)};
  }
  std::vector<std::string> Compared(int number, Rows old_rows, Rows new_rows) {
    level_ = engine_.context->CreateLevel(number);
    level_->Compare(Table(old_rows), Table(new_rows));
    return Brief(level_->ElementArray());
  }
  std::string Unpaired(int number) {
    return EntryText(kMissingElementsUnchecked,
                     "BXLevel" + std::to_string(number) + " Prozedur: BXLevelBasis_CompareElements",
                     "Die Überprüfung auf fehlende Elemente wurde nicht korrekt durchgeführt.");
  }

  FailingEngine engine_;
  Ref<Level> level_;
};

TEST_F(LevelRunsTest, LinesOfLevel3AreComparedByPlace) {
  EXPECT_THAT(Compared(3, {Row("[Line]", "1"), Row("[Line]", "2")},
                       {Row("[line]", "1"), Row("[Line]", "x"), Row("[Line]", "2")}),
              ElementsAre("N [Line]|x|"));
  EXPECT_THAT(Compared(3, {Row("[Line]", "1"), Row("[Line]", "x"), Row("[Line]", "2")},
                       {Row("[Line]", "1"), Row("[Line]", "2")}),
              ElementsAre("D [Line]|x|"));
  EXPECT_THAT(Compared(3, {Row("[Line]", "1"), Row("[Line]", "2")},
                       {Row("[Line]", "2"), Row("[Line]", "1")}),
              ElementsAre("N [Line]|2|", "D [Line]|1|", "N [Line]|1|", "D [Line]|2|"));
  EXPECT_THAT(Compared(3, {Row("[Line]", "1", "a")}, {Row("[Line]", "1", "b")}),
              ElementsAre("U [Line]|1|b"));
}

TEST_F(LevelRunsTest, AListThatDoesNotBeginWithALineIsComparedAsASet) {
  EXPECT_THAT(Compared(3, {Row("[Line]", "1"), Row("A", "1")}, {Row("A", "1"), Row("[Line]", "2")}),
              ElementsAre("N [Line]|2|", "D [Line]|1|"));
  EXPECT_THAT(
      Compared(3, {Row("[Line]", "1"), Row("[Line]", "2")}, {Row("A", ""), Row("[Line]", "1")}),
      ElementsAre("N A||", "D [Line]|2|"));
  EXPECT_THAT(Compared(4, {Row("[Line]", "1"), Row("[Line]", "2")},
                       {Row("[Line]", "2"), Row("[Line]", "1")}),
              IsEmpty());
}

TEST_F(LevelRunsTest, OnlyTheFirstNewRowDecides) {
  // The old list begins with a line too, but that does not count.
  EXPECT_THAT(Compared(3, {Row("[Line]", "1")}, {Row("[Lines]", "1"), Row("[Line]", "1")}),
              ElementsAre("N [Lines]|1|"));
  EXPECT_THAT(Compared(3, {Row("A", "1")}, {Row("[Line]", "1")}), IsEmpty());
  EXPECT_THAT(Entries(engine_.errors), ElementsAre(Unpaired(3)));
}

TEST_F(LevelRunsTest, WholeLevelsAreTakenOverBeforeAnyRunIsLookedAt) {
  EXPECT_THAT(Compared(3, {}, {Row("[Line]", "1")}), ElementsAre("N [Line]|1|[Line]"));
  EXPECT_THAT(Compared(7, {Row("Columns", "Columns", "1")}, {}),
              ElementsAre("D Columns|Columns|Columns"));
}

TEST_F(LevelRunsTest, ColumnsOfLevel7AreComparedByPlaceBehindTheirNumber) {
  const RowTexts two = Row("Columns", "Columns", "2");
  const RowTexts three = Row("columns", "Columns", "3");
  EXPECT_THAT(Compared(7, {two, Row("[Column]", "a"), Row("[Column]", "b")},
                       {three, Row("[Column]", "a"), Row("[Column]", "x"), Row("[Column]", "b")}),
              ElementsAre("N [Column]|x|"));
  EXPECT_THAT(Compared(7, {three, Row("[Column]", "a"), Row("[Column]", "x"), Row("[Column]", "b")},
                       {two, Row("[Column]", "a"), Row("[Column]", "b")}),
              ElementsAre("D [Column]|x|"));
  EXPECT_THAT(Compared(7, {two, Row("[Column]", "a"), Row("[Column]", "b")},
                       {two, Row("[Column]", "b"), Row("[Column]", "a")}),
              ElementsAre("N [Column]|b|", "D [Column]|a|", "N [Column]|a|", "D [Column]|b|"));
  EXPECT_THAT(Compared(7, {two, Row("[Column]", "a"), Row("[Column]", "b")}, {two}),
              ElementsAre("D [Column]|a|", "D [Column]|b|"));
  EXPECT_THAT(Compared(7, {two}, {two, Row("[Column]", "a")}), ElementsAre("N [Column]|a|"));
}

TEST_F(LevelRunsTest, TheNumberOfColumnsIsNoDifference) {
  EXPECT_THAT(Compared(7, {Row("Columns", "Columns", "2")}, {Row("Columns", "Columns", "3")}),
              IsEmpty());
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
  // Nor is a first row that only one side has.
  EXPECT_THAT(Compared(7, {Row("A", "A")}, {Row("Columns", "Columns", "3")}), IsEmpty());
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST_F(LevelRunsTest, AListThatDoesNotBeginWithColumnsIsComparedAsASet) {
  EXPECT_THAT(Compared(7, {Row("[Column]", "a"), Row("[Column]", "b")},
                       {Row("[Column]", "b"), Row("[Column]", "a")}),
              IsEmpty());
  // "Columns" further down can be new, but not changed.
  EXPECT_THAT(
      Compared(7, {Row("[Column]", "a")}, {Row("[Column]", "a"), Row("Columns", "Columns", "1")}),
      ElementsAre("N Columns|Columns|1"));
  EXPECT_THAT(Compared(7, {Row("[Column]", "a"), Row("Columns", "Columns", "1")},
                       {Row("[Column]", "a"), Row("Columns", "Columns", "2")}),
              IsEmpty());
}

TEST_F(LevelRunsTest, TheNumberOfALineIsNoDifferenceAtLevel6) {
  EXPECT_THAT(Compared(6, {Row("LineID", "LineID", "1"), Row("A", "A", "1")},
                       {Row("LineID", "LineID", "2"), Row("A", "A", "2")}),
              ElementsAre("U A|A|2"));
  EXPECT_THAT(Compared(6, {Row("A", "A", "1")}, {Row("A", "A", "1"), Row("LineID", "lineid", "2")}),
              ElementsAre("N LineID|lineid|2"));
  EXPECT_THAT(Compared(6, {Row("Columns", "Columns", "1")}, {Row("Columns", "Columns", "2")}),
              ElementsAre("U Columns|Columns|2"));
  EXPECT_THAT(Compared(7, {Row("LineID", "LineID", "1")}, {Row("LineID", "LineID", "2")}),
              ElementsAre("U LineID|LineID|2"));
  EXPECT_THAT(Compared(5, {Row("LineID", "LineID", "1")}, {Row("LineID", "LineID", "2")}),
              ElementsAre("U LineID|LineID|2"));
}

class OwnPairingTest : public LevelRunsTest, public testing::WithParamInterface<int> {
 protected:
  // Two old elements that only their place tells apart, compared with one at the second's place.
  std::vector<std::string> PairedByPlace(int number) {
    level_ = engine_.context->CreateLevel(number);
    level_->CompareElements(Table({{.name = "A", .prev_name = "p", .value = "1"},
                                   {.name = "A", .prev_name = "q", .value = "2"}}),
                            Table({{.name = "A", .prev_name = "q", .value = "2"}}), "");
    return Brief(level_->ElementArray());
  }
  std::string_view Skipped() const { return GetParam() == 6 ? "LineID" : "Columns"; }
};

TEST_P(OwnPairingTest, ThePlacePlaysNoPart) {
  EXPECT_THAT(PairedByPlace(GetParam()), ElementsAre("U A||2"));
  EXPECT_THAT(PairedByPlace(5), IsEmpty());
  EXPECT_THAT(PairedByPlace(8), IsEmpty());
}

TEST_P(OwnPairingTest, AnElementWithoutAPlaceIsPreferred) {
  level_ = engine_.context->CreateLevel(GetParam());
  level_->CompareElements(
      Table({{.name = "A", .prev_name = "p", .value = "1"}, {.name = "A", .value = "2"}}),
      Table({{.name = "A", .prev_name = "p", .value = "1"}}), "");
  EXPECT_THAT(Brief(level_->ElementArray()), ElementsAre("U A||1"));
}

TEST_P(OwnPairingTest, TheKeyDecidesWhatIsLeftOut) {
  level_ = engine_.context->CreateLevel(GetParam());
  level_->CompareElements(Table({}), Table({{.name = "other", .key = Skipped()}}), "");
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
  level_->CompareElements(Table({}), Table({{.name = Skipped(), .key = "other"}}), "");
  EXPECT_THAT(Entries(engine_.errors), ElementsAre(Unpaired(GetParam())));
}

TEST_P(OwnPairingTest, ContentsAreComparedByTheNextClass) {
  const std::string next = "Tessary.BXLevel" + std::to_string(GetParam() + 1);
  const auto section = [&](std::string_view value) {
    return Table({SectionRow("[A]", LevelOf(engine_.context, GetParam() + 1,
                                            {Row("X", "X", value), Row("Y", "Y", "1")}))});
  };
  level_ = engine_.context->CreateLevel(GetParam());
  level_->CompareElements(section("1"), section("2"), next);
  level_->CompareElements(section("1"), section("1"), next);
  EXPECT_THAT(Brief(level_->ElementArray()), ElementsAre("U [A]|[A]|", "  U X|X|2"));
  EXPECT_EQ(level_->LastElement()->ClassNumber(), GetParam() + 1);
}

TEST_P(OwnPairingTest, AFailureIsReportedLikeThatOfTheCommonComparison) {
  level_ = engine_.context->CreateLevel(GetParam());
  EXPECT_EQ(FailureNumber([&] {
              level_->Compare(Table({Row("B", "B"), SectionRow("[A]")}),
                              Table({SectionRow("[A]"), Row("B", "B")}));
            }),
            kObjectNotSet);
  const std::string name = "BXLevel" + std::to_string(GetParam());
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(91, name + " Prozedur: BXLevelBasis_CompareElements")));
}

INSTANTIATE_TEST_SUITE_P(Levels, OwnPairingTest, testing::Values(6, 7),
                         testing::PrintToStringParamName());

class ColumnCountTest : public LevelRunsTest {
 protected:
  std::vector<std::string> Written(int number, Rows rows) {
    const Ref<Level> level = LevelOf(engine_.context, number, rows);
    Ref<WriteTable> lines;
    level->PrepareWriting(lines, 0);
    return WriteRows(lines);
  }
};

TEST_F(ColumnCountTest, TheFirstColumnsPropertyStatesTheNumberOfColumns) {
  EXPECT_THAT(
      Written(7, {SectionRow("[Column]"), PropertyRow("columns", "9"), SectionRow("[COLUMN]"),
                  PropertyRow("Columns", "8"), SectionRow("[Column]"), SectionRow("[Columns]")}),
      ElementsAre("7 [Column]", "7 columns=3", "7 [COLUMN]", "7 Columns=8", "7 [Column]",
                  "7 [Columns]"));
  EXPECT_THAT(Written(7, {PropertyRow("Columns", "9"), PropertyRow("X", "1")}),
              ElementsAre("7 Columns=0", "7 X=1"));
}

TEST_F(ColumnCountTest, WithoutAColumnsPropertyNothingIsStored) {
  EXPECT_THAT(Written(7, {SectionRow("[Column]"), PropertyRow("Column", "9")}),
              ElementsAre("7 [Column]", "7 Column=9"));
  EXPECT_THAT(Written(7, {}), IsEmpty());
}

TEST_F(ColumnCountTest, OtherLevelsDoNotCount) {
  EXPECT_THAT(Written(6, {PropertyRow("Columns", "9"), SectionRow("[Column]")}),
              ElementsAre("6 Columns=9", "6 [Column]"));
}

TEST_F(ColumnCountTest, AFailureIsReportedUnderItsOwnName) {
  const Ref<Level> level =
      LevelOf(engine_.context, 7, {PropertyRow("Columns", "9"), SectionRow("[Column]")});
  engine_.loop.FailAt(2, kInvalidCall);
  Ref<WriteTable> lines;
  EXPECT_THROW(level->PrepareWriting(lines, 0), Failure);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(5, "BXLevel7 Prozedur: UpdatePropertyColumns")));
}

}  // namespace
}  // namespace tessary
