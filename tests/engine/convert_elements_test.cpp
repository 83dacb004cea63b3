// Applying differences, at a level class that has no rules of its own.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ConvertElementsTest : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  Ref<ElementTable> Table(Rows rows) { return TableOf(engine_.context, rows); }
  Ref<Level> Child(Rows rows) { return LevelOf(engine_.context, 3, rows); }
  void Convert(const Ref<ElementTable>& report, const Ref<ElementTable>& differences) {
    level_->Convert(report, differences);
  }
  Ref<ElementTable> Converted(Rows report, Rows differences) {
    const Ref<ElementTable> rows = Table(report);
    Convert(rows, Table(differences));
    return rows;
  }
  std::vector<std::string> Names(Rows report, Rows differences) {
    return Column(Converted(report, differences), bxeaName);
  }

  TestEngine engine_;
  Ref<Level> level_ = engine_.NewLevel(2);
};

RowTexts Inserted(RowTexts row) { return WithStatus(bxsNew, row); }
RowTexts Deleted(RowTexts row) { return WithStatus(bxsDelete, row); }
RowTexts Updated(RowTexts row) { return WithStatus(bxsUpdate, row); }

TEST_F(ConvertElementsTest, TheReportBecomesTheLevelsArray) {
  const Ref<ElementTable> report = Table({{.name = "A"}});
  Convert(report, nullptr);
  EXPECT_EQ(level_->ElementArray(), report);
  Convert(nullptr, Table({Inserted({.name = "A"})}));
  EXPECT_FALSE(level_->ElementArray());
}

TEST_F(ConvertElementsTest, DeletionsComeFirstThenInsertionsThenUpdates) {
  const Rows differences = {Updated(PropertyRow("C", "neu")),
                            Inserted({.name = "X", .prev_name = "B", .prev_key = "B"}),
                            {.name = "ignored"},
                            Deleted(PropertyRow("B", "")),
                            Inserted(PropertyRow("A", "9")),
                            Deleted(PropertyRow("A", "")),
                            Updated(PropertyRow("A", "10"))};
  // "A" is deleted, inserted again with 9 and then updated; "B" is gone before "X" looks for it.
  const Ref<ElementTable> report =
      Converted({PropertyRow("A", "1"), PropertyRow("B", "2"), PropertyRow("C", "3")}, differences);
  EXPECT_THAT(Brief(report), ElementsAre("- C|C|neu", "- X||", "- A|A|10"));
}

TEST_F(ConvertElementsTest, TheDifferencesAreLeftSorted) {
  const Ref<ElementTable> differences = Table({Updated({.name = "a"}),
                                               {.name = "b"},
                                               Inserted({.name = "c"}),
                                               Deleted({.name = "d"}),
                                               Inserted({.name = "e"}),
                                               Updated({.name = "f"})});
  for (const bool with_report : {false, true}) {
    Convert(with_report ? Table({{.name = "A"}}) : nullptr, differences);
    EXPECT_THAT(Column(differences, bxeaName), ElementsAre("d", "c", "e", "a", "f", "b"));
  }
}

TEST_F(ConvertElementsTest, DeletingWhatIsGoneChangesAndReportsNothing) {
  const Ref<ElementTable> report =
      Converted({PropertyRow("A", "1")},
                {Deleted(PropertyRow("B", "")), Deleted({.name = "A", .key = "other"})});
  EXPECT_THAT(Brief(report), ElementsAre("- A|A|1"));
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST_F(ConvertElementsTest, DeletingTakesTheContentsAlongWhateverThePlace) {
  EXPECT_THAT(
      Names({SectionRow("[A]", Child({PropertyRow("X", "1")})), SectionRow("[B]")},
            {Deleted({.name = "[a]", .key = "[A]", .prev_name = "elsewhere", .pos_nr = "9"})}),
      ElementsAre("[B]"));
}

// The difference's next name is compared with the report's next keys; its next key does not count.
TEST_F(ConvertElementsTest, DeletionsAndUpdatesLookUpTheirNextNeighbourCrosswise) {
  const Rows report = {{.name = "A", .next_name = "n1", .next_key = "k1", .value = "1"},
                       {.name = "A", .next_name = "n2", .next_key = "k2", .value = "2"}};
  const struct {
    const char* name;
    RowTexts difference;
    std::size_t row;
  } rows[] = {
      {"next name like the second's key", {.name = "A", .next_name = "k2"}, 1},
      {"next key like the second's key", {.name = "A", .next_key = "k2"}, 0},
      {"next name like the second's name", {.name = "A", .next_name = "n2"}, 0},
      {"both as recorded", {.name = "A", .next_name = "n2", .next_key = "k2"}, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    RowTexts update = Updated(row.difference);
    update.value = "neu";
    std::vector<std::string> values = {"1", "2"};
    values[row.row] = "neu";
    EXPECT_EQ(Column(Converted(report, {update}), bxeaValue), values);
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(row.row));
    EXPECT_EQ(Column(Converted(report, {Deleted(row.difference)}), bxeaValue),
              std::vector<std::string>{row.row == 0 ? "2" : "1"});
  }
}

TEST_F(ConvertElementsTest, InsertingWhatIsThereChangesNothing) {
  const Rows report = {{.name = "A", .key = "K", .typ = "T", .pos_nr = "1", .value = "eigen"}};
  const Rows differences = {
      Inserted({.name = "a", .key = "k", .typ = "t", .value = "neu"}),
      Inserted(
          {.name = "A", .key = "K", .typ = "T", .prev_name = "x", .pos_nr = "9", .value = "neu"})};
  EXPECT_EQ(Dump(Converted(report, differences)), "- A|K|T|||||||1|eigen\n");
}

TEST_F(ConvertElementsTest, APlaceForANewElementIsLookedForInThisOrder) {
  const Rows report = {{.name = "A", .key = "K", .typ = "T"},
                       {.name = "N"},
                       {.name = "B"},
                       {.name = "N", .key = "2"},
                       {.name = "C", .key = "K"}};
  const struct {
    const char* name;
    RowTexts element;
    std::vector<std::string> names;
  } rows[] = {
      {"behind the previous one though the next is there",
       {.name = "X",
        .prev_name = "a",
        .prev_key = "k",
        .prev_typ = "t",
        .next_name = "C",
        .next_key = "K"},
       {"A", "X", "N", "B", "N", "C"}},
      {"behind the last row",
       {.name = "X", .prev_name = "C", .prev_key = "K"},
       {"A", "N", "B", "N", "C", "X"}},
      {"before the next one",
       {.name = "X", .prev_name = "gone", .next_name = "c", .next_key = "k", .pos_nr = "1"},
       {"A", "N", "B", "N", "X", "C"}},
      {"before the first row",
       {.name = "X", .next_name = "A", .next_key = "K", .next_typ = "T"},
       {"X", "A", "N", "B", "N", "C"}},
      {"previous one of another key",
       {.name = "X", .prev_name = "C"},
       {"A", "N", "B", "N", "C", "X"}},
      {"first of its name",
       {.name = "n", .key = "new", .pos_nr = "1"},
       {"A", "n", "N", "B", "N", "C"}},
      {"second of its name",
       {.name = "N", .key = "new", .pos_nr = " 2 "},
       {"A", "N", "N", "B", "N", "C"}},
      {"counted in rows, not in namesakes",
       {.name = "N", .key = "new", .pos_nr = "3"},
       {"A", "N", "B", "N", "N", "C"}},
      {"on the last row",
       {.name = "N", .key = "new", .pos_nr = "4"},
       {"A", "N", "B", "N", "N", "C"}},
      {"behind the end",
       {.name = "N", .key = "new", .pos_nr = "5"},
       {"A", "N", "B", "N", "C", "N"}},
      {"far behind the end",
       {.name = "N", .key = "new", .pos_nr = "2147483647"},
       {"A", "N", "B", "N", "C", "N"}},
      {"zero is the row before",
       {.name = "N", .key = "new", .pos_nr = "0"},
       {"N", "A", "N", "B", "N", "C"}},
      {"before the beginning",
       {.name = "N", .key = "new", .pos_nr = "-1"},
       {"A", "N", "B", "N", "C", "N"}},
      {"rounded to even",
       {.name = "N", .key = "new", .pos_nr = "2,5"},
       {"A", "N", "N", "B", "N", "C"}},
      {"blank number", {.name = "N", .key = "new", .pos_nr = "  "}, {"A", "N", "B", "N", "C", "N"}},
      {"number without a namesake", {.name = "X", .pos_nr = "2"}, {"A", "N", "B", "N", "C", "X"}},
      {"nothing known", {.name = "X"}, {"A", "N", "B", "N", "C", "X"}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Names(report, {Inserted(row.element)}), row.names) << row.name;
  }
}

// An element without neighbours looks for one of empty name, key and type.
TEST_F(ConvertElementsTest, AnElementOfEmptyIdentityIsThePreviousOneOfElementsWithoutNeighbours) {
  EXPECT_THAT(Names({{.name = "A"}, {.value = "blank"}, {.name = "B"}}, {Inserted({.name = "X"})}),
              ElementsAre("A", "", "X", "B"));
}

TEST_F(ConvertElementsTest, ARowInTheMiddleHasNoPositionAndMovesNobodysPosition) {
  const Ref<Level> child = Child({PropertyRow("Y", "1")});
  RowTexts element{bxsNew, "X", "K", "T", "A", "", "", "B", "", "", "4", "V", child};
  const Ref<ElementTable> report =
      Converted({{.name = "A", .next_name = "B"}, {.name = "B", .prev_name = "A"}}, {element});
  EXPECT_EQ(Dump(report),
            "- A||||||B||||\n"
            "- X|K|T||||||||V\n"
            "  - Y|Y|||||||||1\n"
            "- B|||A|||||||\n");
  EXPECT_EQ(report->Row(2).child, child);
}

TEST_F(ConvertElementsTest, ARowAtTheEndGetsItsNeighboursAndItsNumber) {
  const RowTexts element{bxsNew, "a", "K", "T", "gone", "", "", "", "", "", "", "V"};
  EXPECT_EQ(Dump(Converted({{.name = "A", .key = "1", .typ = "2"}}, {element})),
            "- A|1|2||||a|K|T|1|\n- a|K|T|A|1|2||||2|V\n");
}

TEST_F(ConvertElementsTest, NewElementsFindThoseInsertedBeforeThem) {
  EXPECT_THAT(Names({{.name = "A"}, {.name = "Z"}}, {Inserted({.name = "B", .prev_name = "A"}),
                                                     Inserted({.name = "C", .prev_name = "B"}),
                                                     Inserted({.name = "D", .prev_name = "C"})}),
              ElementsAre("A", "B", "C", "D", "Z"));
}

TEST_F(ConvertElementsTest, AnUpdatedPropertyChangesItsValueOnly) {
  const Ref<ElementTable> report =
      Table({{bxsUnknown, "A", "K", "T", "4", "5", "6", "7", "8", "9", "10", "alt", Child({})}});
  const Ref<Level> child = report->Row(1).child;
  Convert(report, Table({Updated({.name = "a",
                                  .key = "k",
                                  .typ = "t",
                                  .pos_nr = "99",
                                  .value = "neu",
                                  .child = Child({PropertyRow("X", "1")})})}));
  EXPECT_EQ(Dump(report), "- A|K|T|4|5|6|7|8|9|10|neu\n");
  EXPECT_EQ(report->Row(1).child, child);
}

TEST_F(ConvertElementsTest, UpdatingWhatIsGoneChangesAndReportsNothing) {
  EXPECT_THAT(Brief(Converted({PropertyRow("A", "1")}, {Updated(PropertyRow("B", "2"))})),
              ElementsAre("- A|A|1"));
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST_F(ConvertElementsTest, AnUpdatedSectionIsConvertedInside) {
  RowTexts section = SectionRow("[A]", Child({PropertyRow("X", "1"), PropertyRow("Y", "2")}));
  section.value = "eigen";
  RowTexts difference =
      SectionRow("[A]", Child({Updated(PropertyRow("X", "9")), Deleted(PropertyRow("Y", "")),
                               Inserted(PropertyRow("Z", "3"))}));
  difference.value = "neu";
  EXPECT_THAT(Brief(Converted({section}, {Updated(difference)})),
              ElementsAre("- [A]|[A]|eigen", "  - X|X|9", "  - Z|Z|3"));
}

TEST_F(ConvertElementsTest, ASectionWithoutAChildIsLeftAlone) {
  const RowTexts difference = SectionRow("[A]", Child({Inserted(PropertyRow("X", "1"))}));
  EXPECT_THAT(Brief(Converted({SectionRow("[A]")}, {Updated(difference)})),
              ElementsAre("- [A]|[A]|"));
  // Not even the difference's own child is asked for.
  EXPECT_THAT(Brief(Converted({SectionRow("[A]")}, {Updated(SectionRow("[A]"))})),
              ElementsAre("- [A]|[A]|"));
}

TEST_F(ConvertElementsTest, ALevelWithoutRowsStaysEmpty) {
  EXPECT_THAT(Names({}, {Inserted({.name = "A"})}), IsEmpty());
  const RowTexts difference = SectionRow("[A]", Child({Inserted(PropertyRow("X", "1"))}));
  EXPECT_THAT(Brief(Converted({SectionRow("[A]", engine_.NewLevel(3))}, {Updated(difference)})),
              ElementsAre("- [A]|[A]|"));
}

TEST_F(ConvertElementsTest, ALevelThatWasEmptiedStillReceivesInsertions) {
  EXPECT_THAT(Names({{.name = "A"}}, {Deleted({.name = "A"}), Inserted({.name = "B"})}),
              ElementsAre("B"));
}

TEST_F(ConvertElementsTest, UnknownRowsAreSkippedWithAllBelowThem) {
  EXPECT_THAT(Brief(Converted({SectionRow("[A]", Child({PropertyRow("X", "1")}))},
                              {SectionRow("[A]", Child({Updated(PropertyRow("X", "9"))}))})),
              ElementsAre("- [A]|[A]|", "  - X|X|1"));
}

TEST_F(ConvertElementsTest, ChangesBelowAPropertyAreNotApplied) {
  EXPECT_THAT(
      Brief(Converted({PropertyRow("P", "1", Child({PropertyRow("X", "1")}))},
                      {Updated(PropertyRow("P", "1", Child({Updated(PropertyRow("X", "9"))})))})),
      ElementsAre("- P|P|1", "  - X|X|1"));
}

class ConvertFailureTest : public ConvertElementsTest {
 protected:
  std::int32_t FailureOf(const Ref<ElementTable>& report, Rows differences) {
    return FailureNumber([&] { Convert(report, Table(differences)); });
  }
};

constexpr const char* kElementMessage = "Fehler beim Verarbeiten eines Elementes.";

TEST_F(ConvertFailureTest, ANumberThatIsNoneEndsTheInsertionsAndKeepsWhatWasDone) {
  const struct {
    const char* number;
    std::int32_t failure;
  } rows[] = {{"abc", kTypeMismatch}, {"3000000000", kOverflow}};
  for (const auto& row : rows) {
    const Ref<ElementTable> report =
        Table({PropertyRow("A", "1"), PropertyRow("B", "2"), PropertyRow("C", "3")});
    EXPECT_EQ(FailureOf(report, {Updated(PropertyRow("C", "9")),
                                 Inserted({.name = "X", .prev_name = "C", .prev_key = "C"}),
                                 Inserted({.name = "A", .key = "new", .pos_nr = row.number}),
                                 Inserted({.name = "Y"}), Deleted(PropertyRow("B", ""))}),
              row.failure);
    EXPECT_THAT(Entries(engine_.errors),
                ElementsAre(EntryText(row.failure, "BXLevelBasis Prozedur: InsertElement"),
                            EntryText(row.failure, "BXLevel2 Prozedur: BXLevelBasis_Convert",
                                      kElementMessage)));
    EXPECT_THAT(Brief(report), ElementsAre("- A|A|1", "- C|C|3", "- X||"));
  }
}

TEST_F(ConvertFailureTest, ANumberThatIsNoneDoesNotMatterWhereItIsNotNeeded) {
  EXPECT_THAT(Names({{.name = "A"}}, {Inserted({.name = "X", .prev_name = "A", .pos_nr = "abc"}),
                                      Inserted({.name = "Y", .pos_nr = "abc"})}),
              ElementsAre("A", "X", "Y"));
}

TEST_F(ConvertFailureTest, AppendingBehindARowWhoseNumberIsNone) {
  EXPECT_EQ(
      FailureOf(Table({{.name = "A", .pos_nr = "abc"}}), {Inserted({.name = "A", .key = "new"})}),
      kTypeMismatch);
  EXPECT_THAT(
      Entries(engine_.errors),
      ElementsAre(EntryText(13, "BXLevelBasis Prozedur: CheckValuesAround"),
                  EntryText(13, "BXLevel2 Prozedur: BXLevelBasis_Add",
                            "Fehler beim Hinzufügen eines Elementes."),
                  EntryText(13, "BXLevel2 Prozedur: BXLevelBasis_Convert", kElementMessage)));
}

TEST_F(ConvertFailureTest, ADifferenceWithoutAChildIsError91) {
  EXPECT_EQ(FailureOf(Table({SectionRow("[A]", Child({PropertyRow("X", "1")}))}),
                      {Updated(SectionRow("[A]"))}),
            kObjectNotSet);
  EXPECT_THAT(
      Entries(engine_.errors),
      ElementsAre(EntryText(91, "BXLevelBasis Prozedur: UpdateElement"),
                  EntryText(91, "BXLevel2 Prozedur: BXLevelBasis_Convert", kElementMessage)));
}

TEST_F(ConvertFailureTest, EveryEnclosingLevelAddsItsMessage) {
  const Ref<ElementTable> report = Table({SectionRow("[A]", Child({PropertyRow("X", "1")}))});
  EXPECT_EQ(
      FailureOf(report,
                {Updated(SectionRow("[A]", Child({Inserted({.name = "X", .pos_nr = "abc"})})))}),
      kTypeMismatch);
  EXPECT_THAT(
      Entries(engine_.errors),
      ElementsAre(EntryText(13, "BXLevelBasis Prozedur: InsertElement"),
                  EntryText(13, "BXLevel3 Prozedur: BXLevelBasis_Convert", kElementMessage),
                  EntryText(13, "BXLevel2 Prozedur: BXLevelBasis_Convert", kElementMessage)));
}

TEST(ConvertLoopFailureTest, AFailureOfTheLoopItselfIsDescribedByItsText) {
  FailingEngine engine;
  const Ref<Level> level = engine.context->CreateLevel(2);
  const Ref<ElementTable> report = TableOf(engine.context, {{.name = "A"}});
  const Ref<ElementTable> differences =
      TableOf(engine.context, {Inserted({.name = "X"}), Inserted({.name = "Y"})});
  engine.loop.FailAt(2, kInvalidCall);
  EXPECT_EQ(FailureNumber([&] { level->Convert(report, differences); }), kInvalidCall);
  EXPECT_THAT(Entries(engine.errors),
              ElementsAre(EntryText(5, "BXLevel2 Prozedur: BXLevelBasis_Convert")));
  EXPECT_THAT(Column(report, bxeaName), ElementsAre("A", "X"));
  level->Convert(report, differences);
  EXPECT_THAT(Entries(engine.errors), IsEmpty());
  EXPECT_THAT(Column(report, bxeaName), ElementsAre("A", "X", "Y"));
}

// Long enough for the array to be searched through its index while rows come and go.
TEST_F(ConvertElementsTest, ALongListOfDifferencesIsAppliedInOrder) {
  constexpr int kRows = 1000;
  TextPool& pool = *engine_.context->pool();
  const Ref<ElementTable> report = Table({});
  const Ref<ElementTable> differences = Table({});
  std::vector<std::string> expected;
  for (int n = 0; n < kRows; ++n) {
    const std::string name = "E" + std::to_string(n);
    const std::string added = "N" + std::to_string(n);
    const std::string value = "V" + std::to_string(n);
    report->Append(ElementOf(pool, PropertyRow(name, "alt")));
    if (n % 3 == 0) {
      differences->Append(ElementOf(pool, Deleted(PropertyRow(name, ""))));
      continue;
    }
    RowTexts row = Inserted(PropertyRow(added, "neu"));
    row.prev_name = row.prev_key = name;
    differences->Append(ElementOf(pool, row));
    if (n % 2 == 0) differences->Append(ElementOf(pool, Updated(PropertyRow(name, value))));
    expected.push_back("- " + name + "|" + name + "|" + (n % 2 == 0 ? value : "alt"));
    expected.push_back("- " + added + "|" + added + "|neu");
  }
  Convert(report, differences);
  EXPECT_EQ(Brief(report), expected);
}

}  // namespace
}  // namespace tessary
