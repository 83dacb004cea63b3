// The steps of a comparison at the engine class itself, and whole comparisons through a level
// class that has no rules of its own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CompareElementsTest : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  Ref<ElementTable> Table(Rows rows) { return TableOf(engine_.context, rows); }
  Ref<Level> Child(Rows rows) { return LevelOf(engine_.context, 3, rows); }
  Ref<Level> NoRows() { return engine_.NewLevel(3); }
  Ref<ElementTable> Compared(const Ref<ElementTable>& old_rows, const Ref<ElementTable>& new_rows) {
    const Ref<Level> level = engine_.NewLevel(2);
    level->Compare(old_rows, new_rows);
    return level->ElementArray();
  }
  std::vector<std::string> Recorded() { return Brief(basis_->ElementArray()); }

  TestEngine engine_;
  Ref<BXLevelBasis> basis_ = NewBasis(engine_.context);
};

TEST_F(CompareElementsTest, AnEmptyOldLevelMakesEverythingNewWithItsNameAsValue) {
  const Ref<Level> child = Child({PropertyRow("X", "1")});
  for (const bool without_array : {false, true}) {
    const Ref<ElementTable> new_rows =
        Table({SectionRow("[A]", child), PropertyRow("B", "2", NoRows()),
               PropertyRow("C", "3", NoRows())});
    const Ref<ElementTable> result = Compared(without_array ? nullptr : Table({}), new_rows);
    EXPECT_THAT(Brief(result), ElementsAre("N [A]|[A]|[A]", "  - X|X|1", "N B|B|B", "N C|C|C"));
    EXPECT_EQ(result->Row(1).child, child);
    EXPECT_TRUE(result->Row(2).HasChild());
    EXPECT_EQ(new_rows->rows(), 0);
  }
}

TEST_F(CompareElementsTest, AnEmptyNewLevelMakesEverythingDeletedWithoutContents) {
  for (const bool without_array : {false, true}) {
    const Ref<ElementTable> old_rows =
        Table({SectionRow("[A]", Child({PropertyRow("X", "1")})), PropertyRow("B", "2", NoRows())});
    const Ref<ElementTable> result = Compared(old_rows, without_array ? nullptr : Table({}));
    EXPECT_THAT(Brief(result), ElementsAre("D [A]|[A]|[A]", "D B|B|B"));
    EXPECT_FALSE(result->Row(1).HasChild());
    EXPECT_EQ(old_rows->rows(), 0);
  }
}

TEST_F(CompareElementsTest, TakingOverAWholeLevelKeepsThePositionColumns) {
  const RowTexts row{bxsUnknown, "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"};
  EXPECT_TRUE(basis_->CheckForAddingAllElements(nullptr, Table({row})));
  EXPECT_TRUE(basis_->CheckForAddingAllElements(Table({row}), nullptr));
  EXPECT_EQ(Dump(basis_->ElementArray()), "N 1|2|3|4|5|6|7|8|9|10|1\nD 1|2|3|4|5|6|7|8|9|10|1\n");
}

TEST_F(CompareElementsTest, WithRowsOnBothSidesNothingIsTakenOver) {
  const Ref<ElementTable> old_rows = Table({{.name = "A"}});
  const Ref<ElementTable> new_rows = Table({{.name = "B"}});
  EXPECT_FALSE(basis_->CheckForAddingAllElements(old_rows, new_rows));
  EXPECT_EQ(old_rows->rows(), 1);
  EXPECT_EQ(new_rows->rows(), 1);
  EXPECT_FALSE(basis_->ElementArray());
}

TEST_F(CompareElementsTest, MissingElementsAreFoundByNameKeyAndType) {
  const struct {
    const char* name;
    RowTexts dest;
    bool missing;
  } rows[] = {
      {"equal", {.name = "A", .key = "K", .typ = "T"}, false},
      {"other case", {.name = "a", .key = "k", .typ = "t"}, false},
      {"other name", {.name = "B", .key = "K", .typ = "T"}, true},
      {"other key", {.name = "A", .key = "L", .typ = "T"}, true},
      {"other type", {.name = "A", .key = "K", .typ = "S"}, true},
      {"other place",
       {.name = "A", .key = "K", .typ = "T", .prev_name = "x", .next_key = "y", .pos_nr = "3"},
       false},
      {"other value", {.name = "A", .key = "K", .typ = "T", .value = "x"}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    basis_ = NewBasis(engine_.context);
    const Ref<ElementTable> source = Table({{.name = "A", .key = "K", .typ = "T", .value = "V"}});
    basis_->CheckMissingElements(source, Table({row.dest}), bxsNew);
    EXPECT_EQ(source->rows(), row.missing ? 0 : 1);
    EXPECT_EQ(Recorded(),
              row.missing ? std::vector<std::string>{"N A|K|V"} : std::vector<std::string>{});
  }
}

TEST_F(CompareElementsTest, MissingElementsKeepTheirOrderAndTheOthersStay) {
  const Ref<ElementTable> source =
      Table({PropertyRow("A", "1"), PropertyRow("B", "2", NoRows()), PropertyRow("C", "3"),
             PropertyRow("D", "4", NoRows()), PropertyRow("E", "5", NoRows())});
  basis_->CheckMissingElements(source, Table({PropertyRow("C", ""), PropertyRow("A", "")}), bxsNew);
  EXPECT_THAT(Recorded(), ElementsAre("N B|B|2", "N D|D|4", "N E|E|5"));
  EXPECT_TRUE(basis_->ElementArray()->Row(1).HasChild());
  EXPECT_THAT(Column(source, bxeaName), ElementsAre("A", "C"));
  basis_->CheckMissingElements(source, nullptr, bxsDelete);
  EXPECT_THAT(Recorded(), ElementsAre("N B|B|2", "N D|D|4", "N E|E|5", "D A|A|1", "D C|C|3"));
  EXPECT_FALSE(basis_->ElementArray()->Row(4).HasChild());
  EXPECT_EQ(source->rows(), 0);
}

TEST_F(CompareElementsTest, ARowThatAlreadyHasTheStatusIsTakenOverToo) {
  const Ref<ElementTable> source =
      Table({WithStatus(bxsNew, PropertyRow("A", "1")), PropertyRow("B", "2")});
  basis_->CheckMissingElements(source, Table({PropertyRow("A", ""), PropertyRow("B", "")}), bxsNew);
  EXPECT_THAT(Recorded(), ElementsAre("N A|A|1"));
  EXPECT_THAT(Column(source, bxeaName), ElementsAre("B"));
}

TEST_F(CompareElementsTest, UnchangedPropertiesLeaveNoTrace) {
  const struct {
    const char* name;
    const char* old_value;
    const char* new_value;
    bool differs;
  } rows[] = {
      {"equal", "Wert", "Wert", false},
      {"sharp s is not double s", "GRÖSSE", "größe", true},
      {"only case", "größe", "GRÖßE", false},
      {"other value", "1", "2", true},
      {"empty", "", "", false},
      {"empty before", "", "1", true},
      {"empty after", "1", "", true},
      {"blank", "1", "1 ", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Ref<ElementTable> result = Compared(Table({PropertyRow("A", row.old_value, NoRows())}),
                                              Table({PropertyRow("A", row.new_value, NoRows())}));
    EXPECT_EQ(result->rows(), row.differs ? 1 : 0);
  }
}

TEST_F(CompareElementsTest, AChangedPropertyHasTheNewValueAndThePlaceOfTheNewElement) {
  const Ref<ElementTable> result = Compared(
      Table({{bxsUnknown, "A", "K", "T", "x", "x", "x", "x", "x", "x", "x", "alt", NoRows()}}),
      Table({{bxsUnknown, "a", "k", "t", "4", "5", "6", "7", "8", "9", "10", "neu", NoRows()}}));
  EXPECT_EQ(Dump(result), "U a|k|t|4|5|6|7|8|9|10|neu\n");
}

TEST_F(CompareElementsTest, AMovedElementIsNeitherNewNorDeleted) {
  const Ref<ElementTable> result =
      Compared(Table({PropertyRow("A", "1", NoRows()), PropertyRow("B", "2", NoRows()),
                      PropertyRow("C", "3", NoRows())}),
               Table({PropertyRow("C", "3", NoRows()), PropertyRow("A", "1", NoRows()),
                      PropertyRow("B", "x", NoRows())}));
  EXPECT_THAT(Brief(result), ElementsAre("U B|B|x"));
}

TEST_F(CompareElementsTest, NewOnesComeBeforeDeletedOnesAndChangedOnesLast) {
  const Ref<ElementTable> result =
      Compared(Table({PropertyRow("Old", "1", NoRows()), PropertyRow("Both", "2", NoRows())}),
               Table({PropertyRow("Both", "x", NoRows()), PropertyRow("New", "3", NoRows())}));
  EXPECT_THAT(Brief(result), ElementsAre("N New|New|3", "D Old|Old|1", "U Both|Both|x"));
}

TEST_F(CompareElementsTest, AnEqualSectionLeavesNoTrace) {
  const auto section = [&] {
    return Table({SectionRow("[A]", Child({PropertyRow("X", "1", NoRows())}))});
  };
  EXPECT_EQ(Compared(section(), section())->rows(), 0);
}

TEST_F(CompareElementsTest, OneInnerChangeIsRecordedBelowItsSection) {
  const auto section = [&](const char* value) {
    return Table({SectionRow(
        "[A]", Child({PropertyRow("W", "0", NoRows()), PropertyRow("X", value, NoRows()),
                      PropertyRow("Y", "2", NoRows())}))});
  };
  EXPECT_THAT(Brief(Compared(section("1"), section("9"))), ElementsAre("U [A]|[A]|", "  U X|X|9"));
}

TEST_F(CompareElementsTest, AChangedValueOfASectionIsRecordedWithoutInnerChanges) {
  RowTexts old_row = SectionRow("[A]", Child({PropertyRow("X", "1", NoRows())}));
  RowTexts new_row = SectionRow("[A]", Child({PropertyRow("X", "1", NoRows())}));
  old_row.value = "1";
  new_row.value = "2";
  const Ref<ElementTable> result = Compared(Table({old_row}), Table({new_row}));
  EXPECT_THAT(Brief(result), ElementsAre("U [A]|[A]|2"));
  EXPECT_TRUE(result->Row(1).HasChild());
}

TEST_F(CompareElementsTest, ContentsThatAppearOrDisappearAreRecorded) {
  const auto empty = [&] { return Table({SectionRow("[A]", NoRows())}); };
  const auto filled = [&] {
    return Table({SectionRow("[A]", Child({PropertyRow("X", "1", NoRows())}))});
  };
  EXPECT_THAT(Brief(Compared(empty(), filled())), ElementsAre("U [A]|[A]|", "  N X|X|X"));
  EXPECT_THAT(Brief(Compared(filled(), empty())), ElementsAre("U [A]|[A]|", "  D X|X|X"));
  EXPECT_THAT(Brief(Compared(empty(), empty())), IsEmpty());
}

TEST_F(CompareElementsTest, OfTwoEqualOldElementsOneIsPairedAndTheOtherForgotten) {
  const Ref<ElementTable> old_rows =
      Table({{.name = "A", .prev_name = "p", .value = "1", .child = NoRows()},
             {.name = "A", .prev_name = "q", .value = "2", .child = NoRows()}});
  const Ref<ElementTable> result =
      Compared(old_rows, Table({{.name = "A", .prev_name = "q", .value = "3", .child = NoRows()}}));
  EXPECT_EQ(Dump(result), "U A|||q|||||||3\n");
  EXPECT_EQ(old_rows->rows(), 2);
  EXPECT_THAT(
      Brief(Compared(old_rows,
                     Table({{.name = "A", .prev_name = "q", .value = "2", .child = NoRows()}}))),
      IsEmpty());
}

TEST_F(CompareElementsTest, TwoEmptyLevelsAreNotCompared) {
  EXPECT_FALSE(Compared(nullptr, nullptr));
  EXPECT_FALSE(Compared(Table({}), nullptr));
  EXPECT_FALSE(Compared(Table({}), Table({})));
}

TEST_F(CompareElementsTest, WithoutAReceivingClassOnlyValuesCount) {
  const Ref<ElementTable> old_rows =
      Table({PropertyRow("A", "1"), SectionRow("[B]", Child({PropertyRow("X", "1")}))});
  const Ref<ElementTable> new_rows =
      Table({PropertyRow("A", "2"), SectionRow("[B]", Child({PropertyRow("X", "2")}))});
  basis_->CompareElements(old_rows, new_rows, "");
  EXPECT_THAT(Recorded(), ElementsAre("U A|A|2"));
  EXPECT_FALSE(basis_->ElementArray()->Row(1).HasChild());
}

TEST_F(CompareElementsTest, AnUnknownReceivingClassIsError429) {
  EXPECT_EQ(FailureNumber([&] {
              basis_->CompareElements(Table({{.name = "A"}}), Table({{.name = "A"}}),
                                      "Tessary.BXLevel0");
            }),
            kCannotCreateObject);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(429, "BXLevel2 Prozedur: BXLevelBasis_CompareElements")));
}

class UnpairedElementTest : public CompareElementsTest {
 protected:
  const std::string entry_ =
      EntryText(kMissingElementsUnchecked, "BXLevel2 Prozedur: BXLevelBasis_CompareElements",
                "Die Überprüfung auf fehlende Elemente wurde nicht korrekt durchgeführt.");
};

TEST_F(UnpairedElementTest, IsReportedAndTheLoopGoesOn) {
  basis_->CompareElements(
      Table({PropertyRow("B", "1")}),
      Table({PropertyRow("A", "1"), PropertyRow("B", "1"), PropertyRow("C", "1")}), "");
  // The pair between the two reports cleared the first of them.
  EXPECT_THAT(Entries(engine_.errors), ElementsAre(entry_));
  EXPECT_EQ(basis_->ElementArray()->rows(), 0);
}

TEST_F(UnpairedElementTest, SeveralInARowAreAllReported) {
  basis_->CompareElements(Table({PropertyRow("B", "1")}),
                          Table({PropertyRow("A", "1"), PropertyRow("C", "1")}), "");
  EXPECT_THAT(Entries(engine_.errors), ElementsAre(entry_, entry_));
  EXPECT_FALSE(basis_->ElementArray());
}

TEST_F(UnpairedElementTest, OfAnEarlierRowIsForgottenWithTheNextPair) {
  basis_->CompareElements(Table({PropertyRow("B", "1")}),
                          Table({PropertyRow("A", "1"), PropertyRow("B", "2")}), "");
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
  EXPECT_THAT(Recorded(), ElementsAre("U B|B|2"));
}

class CompareFailureTest : public CompareElementsTest {
 protected:
  std::int32_t FailureOfCompare(int number, const Ref<ElementTable>& old_rows,
                                const Ref<ElementTable>& new_rows) {
    level_ = engine_.NewLevel(number);
    return FailureNumber([&] { level_->Compare(old_rows, new_rows); });
  }
  Ref<Level> Nested(int number, const RowTexts& row) {
    return LevelOf(engine_.context, number, {row});
  }

  Ref<Level> level_;
};

TEST_F(CompareFailureTest, ARowWithoutAChildIsError91) {
  for (const bool on_old_side : {true, false}) {
    EXPECT_EQ(FailureOfCompare(2, Table({SectionRow("[A]", on_old_side ? nullptr : NoRows())}),
                               Table({SectionRow("[A]", on_old_side ? NoRows() : nullptr)})),
              kObjectNotSet);
    EXPECT_THAT(Entries(engine_.errors),
                ElementsAre(EntryText(91, "BXLevel2 Prozedur: BXLevelBasis_CompareElements")));
  }
}

TEST_F(CompareFailureTest, TheRowOfTheFailureAndThoseBeforeItStayRecorded) {
  FailureOfCompare(2,
                   Table({PropertyRow("A", "1", NoRows()), PropertyRow("B", "1"),
                          PropertyRow("C", "1", NoRows())}),
                   Table({PropertyRow("A", "2", NoRows()), PropertyRow("B", "1", NoRows()),
                          PropertyRow("C", "2", NoRows())}));
  EXPECT_THAT(Brief(level_->ElementArray()), ElementsAre("U A|A|2", "U B|B|1"));
}

TEST_F(CompareFailureTest, EveryEnclosingLevelAddsItsMessage) {
  const auto tree = [&](const Ref<Level>& innermost) {
    return Table(
        {SectionRow("[A]", Nested(1, SectionRow("[B]", Nested(2, SectionRow("[C]", innermost)))))});
  };
  EXPECT_EQ(FailureOfCompare(0, tree(nullptr), tree(NoRows())), kObjectNotSet);
  const char* message = "Fehler beim Vergleichen der Elemente.";
  EXPECT_THAT(
      Entries(engine_.errors),
      ElementsAre(EntryText(91, "BXLevel2 Prozedur: BXLevelBasis_CompareElements"),
                  EntryText(91, "BXLevel1 Prozedur: BXLevelBasis_CompareElements", message),
                  EntryText(91, "BXLevel0 Prozedur: BXLevelBasis_CompareElements", message)));
}

TEST_F(CompareFailureTest, AnArrayThatAStepHasToCopyIsError91WhenItIsMissing) {
  const auto failure = [&](auto step) { return FailureNumber([&] { step(*basis_); }); };
  EXPECT_EQ(failure([](auto& basis) { basis.CheckForAddingAllElements(nullptr, nullptr); }), 91);
  EXPECT_EQ(failure([](auto& basis) { basis.CheckMissingElements(nullptr, nullptr, bxsNew); }), 91);
  EXPECT_EQ(failure([](auto& basis) { basis.CompareElements(nullptr, nullptr, ""); }), 91);
  const Ref<ElementTable> rows = Table({{.name = "A", .key = "K"}});
  EXPECT_EQ(
      failure([&](auto& basis) { basis.CheckMissingSpecialElements(rows, nullptr, bxsNew, 1); }),
      91);
  EXPECT_EQ(
      failure([&](auto& basis) { basis.CheckMissingSpecialElements(nullptr, rows, bxsNew, 1); }),
      91);
  EXPECT_THAT(
      Entries(engine_.errors),
      ElementsAre(EntryText(91, "BXLevel2 Prozedur: BXLevelBasis_CheckMissingSpecialElements")));
  EXPECT_EQ(rows->rows(), 1);
  EXPECT_FALSE(basis_->ElementArray());
}

// A window message that fails stands for any failure in the middle of a loop.
class CompareLoopFailureTest : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  // The entries of a step that fails at its loop's turn `turn`.
  template <class Step>
  std::vector<std::string> EntriesOf(int turn, Step step) {
    engine_.errors.objErrors->Add({ErrorEntry::kFailure, 1, "old", "entry"});
    engine_.loop.FailAt(turn, kInvalidCall);
    EXPECT_EQ(FailureNumber(step), kInvalidCall);
    return Entries(engine_.errors);
  }
  Ref<ElementTable> Table(Rows rows) { return TableOf(engine_.context, rows); }

  FailingEngine engine_;
  Ref<BXLevelBasis> basis_ = NewBasis(engine_.context, "BXLevel8");
  Ref<ElementTable> Three() { return Table({{.name = "A"}, {.name = "B"}, {.name = "C"}}); }
};

TEST_F(CompareLoopFailureTest, EveryStepReportsUnderItsOwnName) {
  EXPECT_THAT(
      EntriesOf(2, [&] { basis_->CheckForAddingAllElements(nullptr, Three()); }),
      ElementsAre(EntryText(5, "BXLevel8 Prozedur: BXLevelBasis_CheckForAddingAllElements")));
  EXPECT_THAT(EntriesOf(2, [&] { basis_->CheckMissingElements(Three(), nullptr, bxsNew); }),
              ElementsAre(EntryText(5, "BXLevel8 Prozedur: BXLevelBasis_CheckMissingElements")));
  EXPECT_THAT(EntriesOf(2, [&] { basis_->CompareElements(Three(), Three(), ""); }),
              ElementsAre(EntryText(5, "BXLevel8 Prozedur: BXLevelBasis_CompareElements")));
  EXPECT_THAT(
      EntriesOf(1,
                [&] {
                  basis_->CheckMissingSpecialElements(Table({SectionRow("[Line]")}), Table({}),
                                                      bxsNew, 1);
                }),
      ElementsAre(EntryText(5, "BXLevel8 Prozedur: BXLevelBasis_CheckMissingSpecialElements")));
}

TEST_F(CompareLoopFailureTest, AnUnpairedElementBeforeTheFailureComesFirst) {
  EXPECT_THAT(
      EntriesOf(2, [&] { basis_->CompareElements(Table({{.name = "X"}}), Three(), ""); }),
      ElementsAre(
          EntryText(kMissingElementsUnchecked, "BXLevel8 Prozedur: BXLevelBasis_CompareElements",
                    "Die Überprüfung auf fehlende Elemente wurde nicht korrekt durchgeführt."),
          EntryText(5, "BXLevel8 Prozedur: BXLevelBasis_CompareElements",
                    "Fehler beim Vergleichen der Elemente.")));
}

TEST_F(CompareLoopFailureTest, EveryRowTakesATurn) {
  basis_->CheckForAddingAllElements(nullptr, Three());
  EXPECT_EQ(engine_.loop.turns(), 3);
  basis_->CheckMissingElements(Three(), Three(), bxsNew);
  EXPECT_EQ(engine_.loop.turns(), 9);
  basis_->CompareElements(Three(), Three(), "");
  EXPECT_EQ(engine_.loop.turns(), 12);
}

// One array in two roles: the steps read a copy, so what they add is not read again.
class SharedArrayTest : public CompareElementsTest {};

TEST_F(SharedArrayTest, TakingOverIntoTheArrayItself) {
  const Ref<ElementTable> table = Table({{.name = "A"}, {.name = "B"}});
  basis_->SetElementArray(table);
  EXPECT_TRUE(basis_->CheckForAddingAllElements(nullptr, table));
  EXPECT_THAT(Brief(table), ElementsAre("N A||A", "N B||B"));
}

TEST_F(SharedArrayTest, MissingElementsOfTheArrayItself) {
  const Ref<ElementTable> table = Table({{.name = "A"}, {.name = "B"}, {.name = "C"}});
  basis_->SetElementArray(table);
  basis_->CheckMissingElements(table, Table({{.name = "B"}}), bxsDelete);
  EXPECT_THAT(Brief(table), ElementsAre("- B||", "D A||", "D C||"));
}

TEST_F(SharedArrayTest, ComparingIntoTheOldArray) {
  const Ref<ElementTable> table = Table({PropertyRow("A", "1"), PropertyRow("B", "2")});
  basis_->SetElementArray(table);
  basis_->CompareElements(table, Table({PropertyRow("A", "9"), PropertyRow("B", "2")}), "");
  EXPECT_THAT(Brief(table), ElementsAre("- A|A|1", "- B|B|2", "U A|A|9"));
}

TEST_F(SharedArrayTest, ComparingIntoTheNewArray) {
  const Ref<ElementTable> table = Table({PropertyRow("A", "1"), PropertyRow("B", "2")});
  basis_->SetElementArray(table);
  basis_->CompareElements(Table({PropertyRow("A", "9"), PropertyRow("B", "2")}), table, "");
  EXPECT_THAT(Brief(table), ElementsAre("- A|A|1", "- B|B|2", "U A|A|1"));
}

TEST_F(SharedArrayTest, ARunReplacedIntoTheArrayItself) {
  const Ref<ElementTable> table = Table({{.name = "L", .key = "1"}, {.name = "L", .key = "2"}});
  basis_->SetElementArray(table);
  basis_->CheckMissingSpecialElements(
      table, Table({{.name = "L", .key = "1"}, {.name = "L", .key = "x"}}), bxsNew, 1);
  EXPECT_THAT(Brief(table), ElementsAre("- L|1|", "N L|2|", "D L|x|"));
}

}  // namespace
}  // namespace tessary
