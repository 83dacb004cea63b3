#include "engine/level_basis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LevelBasisTest : public testing::Test {
 protected:
  void Add(const RowTexts& row) { basis_->Add(ArgumentsOf(row)); }
  std::int32_t FailureOfAdd(const RowTexts& row) {
    return FailureNumber([&] { Add(row); });
  }
  std::string Dumped() { return Dump(basis_->ElementArray()); }
  std::vector<std::string> Cells(BXElementArray column) {
    return Column(basis_->ElementArray(), column);
  }

  TestEngine engine_;
  Ref<BXLevelBasis> basis_ = NewBasis(engine_.context);
};

TEST_F(LevelBasisTest, ThereIsNoArrayBeforeTheFirstAdd) {
  EXPECT_FALSE(basis_->ElementArray());
  Add({.name = "A"});
  ASSERT_TRUE(basis_->ElementArray());
  EXPECT_EQ(basis_->ElementArray()->rows(), 1);
}

TEST_F(LevelBasisTest, TheFirstElementHasNoPreviousOne) {
  Add({.name = "A", .key = "K", .typ = "T", .pos_nr = "7", .value = "V"});
  EXPECT_EQ(Dumped(), "- A|K|T|||||||7|V\n");
}

TEST_F(LevelBasisTest, AllColumnsAreStored) {
  const Ref<Level> child = engine_.NewLevel(3);
  Add({bxsUpdate, "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", child});
  EXPECT_EQ(Dumped(), "U 1|2|3|4|5|6|7|8|9|10|11\n");
  EXPECT_EQ(basis_->ElementArray()->Row(1).child, child);
  EXPECT_EQ(basis_->LastElement(), child);
}

TEST_F(LevelBasisTest, NeighboursAreNamedBothWays) {
  Add({.name = "A", .key = "KA", .typ = "TA"});
  Add({.name = "B", .key = "KB", .typ = "TB"});
  EXPECT_EQ(Dumped(), "- A|KA|TA||||B|KB|TB||\n- B|KB|TB|A|KA|TA|||||\n");
}

TEST_F(LevelBasisTest, ARunOfTheSameNameIsNumberedWithoutRegardToCase) {
  for (const char* name : {"Line", "line", "LINE", "Other"}) Add({.name = name});
  EXPECT_THAT(Cells(bxeaPosNr), ElementsAre("1", "2", "3", ""));
  EXPECT_THAT(Cells(bxeaPosNextName), ElementsAre("line", "LINE", "Other", ""));
  EXPECT_THAT(Cells(bxeaPosPrevName), ElementsAre("", "Line", "line", "LINE"));
}

TEST_F(LevelBasisTest, EveryRunStartsAgain) {
  for (const char* name : {"A", "A", "B", "A", "A", "A"}) Add({.name = name});
  EXPECT_THAT(Cells(bxeaPosNr), ElementsAre("1", "2", "", "1", "2", "3"));
}

TEST_F(LevelBasisTest, ARunContinuesFromTheNumberThatIsThere) {
  Add({.name = "A", .pos_nr = "7"});
  Add({.name = "A", .pos_nr = "100"});
  Add({.name = "B", .pos_nr = "5"});
  Add({.name = "b"});
  Add({.name = "B"});
  EXPECT_THAT(Cells(bxeaPosNr), ElementsAre("7", "8", "5", "6", "7"));
}

TEST_F(LevelBasisTest, NumbersThatAreRoundedKeepTheTextThatIsThere) {
  Add({.name = "A", .pos_nr = "2,5"});
  Add({.name = "A"});
  EXPECT_THAT(Cells(bxeaPosNr), ElementsAre("2,5", "3"));
}

TEST_F(LevelBasisTest, AKnownStatusIsStoredAsGivenAndChangesNothingBefore) {
  for (const BXStatus status : {bxsDelete, bxsNew, bxsUpdate}) {
    basis_ = NewBasis(engine_.context);
    Add({.name = "A"});
    Add({.status = status, .name = "A", .prev_name = "x", .next_typ = "y", .pos_nr = "abc"});
    EXPECT_THAT(Cells(bxeaPosNextName), ElementsAre("", ""));
    EXPECT_THAT(Cells(bxeaPosNr), ElementsAre("", "abc"));
    EXPECT_THAT(Cells(bxeaPosPrevName), ElementsAre("", "x"));
    EXPECT_THAT(Cells(bxeaPosNextTyp), ElementsAre("", "y"));
  }
}

TEST_F(LevelBasisTest, PreviousColumnsThatTheCallerPassesAreKept) {
  Add({.name = "A", .key = "K", .typ = "T"});
  Add({.name = "B", .prev_name = "own"});
  Add({.name = "C", .prev_key = "own"});
  EXPECT_THAT(Cells(bxeaPosPrevName), ElementsAre("", "own", "B"));
  EXPECT_THAT(Cells(bxeaPosPrevKey), ElementsAre("", "K", "own"));
  EXPECT_THAT(Cells(bxeaPosPrevTyp), ElementsAre("", "T", ""));
}

TEST_F(LevelBasisTest, NextColumnsOfTheRowBeforeThatAreFilledAreLeftAlone) {
  Add({.name = "A", .next_name = "own"});
  Add({.name = "B", .key = "K", .typ = "T", .next_key = "own"});
  Add({.name = "C", .key = "L", .typ = "S"});
  EXPECT_THAT(Cells(bxeaPosNextName), ElementsAre("own", "C", ""));
  EXPECT_THAT(Cells(bxeaPosNextKey), ElementsAre("K", "own", ""));
  EXPECT_THAT(Cells(bxeaPosNextTyp), ElementsAre("T", "S", ""));
}

TEST_F(LevelBasisTest, AnElementWithoutAChildHasNoLastElement) {
  Add({.name = "[A]", .child = engine_.NewLevel(1)});
  EXPECT_TRUE(basis_->LastElement());
  Add(PropertyRow("Width", "10"));
  EXPECT_FALSE(basis_->LastElement());
}

TEST_F(LevelBasisTest, LastElementWithoutArrayOrRowsFails) {
  EXPECT_EQ(FailureNumber([&] { basis_->LastElement(); }), kObjectNotSet);
  basis_->SetElementArray(TableOf(engine_.context, {}));
  EXPECT_EQ(FailureNumber([&] { basis_->LastElement(); }), kSubscriptOutOfRange);
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST_F(LevelBasisTest, TheArrayIsSharedNotCopied) {
  const Ref<ElementTable> table = TableOf(engine_.context, {{.name = "A"}});
  basis_->SetElementArray(table);
  EXPECT_EQ(basis_->ElementArray(), table);
  Add({.name = "B"});
  EXPECT_THAT(Column(table, bxeaName), ElementsAre("A", "B"));
  basis_->SetElementArray(nullptr);
  EXPECT_FALSE(basis_->ElementArray());
}

TEST_F(LevelBasisTest, AFoundFieldIsHandedOutOnce) {
  FoundField field;
  EXPECT_FALSE(basis_->GetFoundFieldValue(field));
  TextPool& pool = *engine_.context->pool();
  basis_->SetFoundFieldValue({true, 3, bxeaTyp, pool.Intern("[Line]"), pool.Intern("Wert")});
  EXPECT_TRUE(basis_->GetFoundFieldValue(field));
  EXPECT_EQ(pool.Text(field.owner), "[Line]");
  EXPECT_EQ(field.owner_level, 3);
  EXPECT_EQ(field.field, bxeaTyp);
  EXPECT_EQ(pool.Text(field.value), "Wert");
  EXPECT_FALSE(basis_->GetFoundFieldValue(field));
}

TEST_F(LevelBasisTest, TheEngineClassIsNoLevelClass) {
  EXPECT_EQ(basis_->ClassNumber(), Level::kNoLevelClass);
}

TEST_F(LevelBasisTest, CompareOfTheEngineClassDoesNothing) {
  const Ref<ElementTable> table = TableOf(engine_.context, {{.name = "A"}});
  basis_->Compare(table, nullptr);
  EXPECT_EQ(table->rows(), 1);
  EXPECT_FALSE(basis_->ElementArray());
}

TEST_F(LevelBasisTest, ANumberThatIsNoneFailsBehindItsRow) {
  const struct {
    const char* number;
    std::int32_t failure;
  } rows[] = {{"abc", kTypeMismatch},
              {" ", kTypeMismatch},
              {"2147483647", kOverflow},
              {"99999999999", kOverflow}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.number);
    basis_ = NewBasis(engine_.context, "BXLevel3");
    Add({.name = "Line", .pos_nr = row.number});
    EXPECT_EQ(FailureOfAdd({.name = "LINE"}), row.failure);
    EXPECT_THAT(Entries(engine_.errors),
                ElementsAre(EntryText(row.failure, "BXLevelBasis Prozedur: CheckValuesAround"),
                            EntryText(row.failure, "BXLevel3 Prozedur: BXLevelBasis_Add",
                                      "Fehler beim Hinzufügen eines Elementes.")));
    Add({.name = "Other"});
    EXPECT_THAT(Entries(engine_.errors), IsEmpty());
    EXPECT_EQ(Cells(bxeaName).back(), "Other");
  }
}

TEST_F(LevelBasisTest, ANumberThatIsNoneDoesNotMatterBehindAnotherName) {
  Add({.name = "Line", .pos_nr = "abc"});
  Add({.name = "Other"});
  EXPECT_THAT(Cells(bxeaPosNr), ElementsAre("abc", ""));
}

TEST_F(LevelBasisTest, AddClearsEarlierEntries) {
  engine_.errors.objErrors->Add({ErrorEntry::kFailure, 1, "q", "m"});
  Add({.name = "A"});
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

}  // namespace
}  // namespace tessary
