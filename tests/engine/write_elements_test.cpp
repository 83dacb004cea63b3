#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WriteElementsTest : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  std::vector<std::string> Written(Rows rows, std::int32_t level = 0) {
    const Ref<BXLevelBasis> basis = NewBasis(engine_.context);
    basis->SetElementArray(TableOf(engine_.context, rows));
    Ref<WriteTable> lines;
    basis->PrepareWriting(lines, level);
    return WriteRows(lines);
  }
  Ref<Level> Child(int number, Rows rows) { return LevelOf(engine_.context, number, rows); }

  TestEngine engine_;
};

TEST_F(WriteElementsTest, AnEmptyLevelLeavesTheWriteArrayAlone) {
  for (const bool without_array : {true, false}) {
    const Ref<BXLevelBasis> basis = NewBasis(engine_.context);
    if (!without_array) basis->SetElementArray(TableOf(engine_.context, {}));
    Ref<WriteTable> lines;
    basis->PrepareWriting(lines, 3);
    EXPECT_FALSE(lines);
    lines = MakeRef<WriteTable>();
    lines->Append(1, "X=1");
    const Ref<WriteTable> before = lines;
    basis->PrepareWriting(lines, 3);
    EXPECT_EQ(lines, before);
    EXPECT_THAT(WriteRows(lines), ElementsAre("1 X=1"));
  }
}

TEST_F(WriteElementsTest, RowsAreAppendedToAnArrayThatIsThere) {
  const Ref<BXLevelBasis> basis = NewBasis(engine_.context);
  basis->SetElementArray(TableOf(engine_.context, {PropertyRow("A", "1")}));
  Ref<WriteTable> lines;
  basis->PrepareWriting(lines, 4);
  basis->PrepareWriting(lines, 5);
  EXPECT_THAT(WriteRows(lines), ElementsAre("4 A=1", "5 A=1"));
  EXPECT_THAT(Brief(basis->ElementArray()), ElementsAre("- A|A|1"));
}

TEST_F(WriteElementsTest, ASectionIsFollowedByItsContentsThenByItsSibling) {
  EXPECT_THAT(
      Written({SectionRow("[A]", Child(1, {PropertyRow("X", "1"),
                                           SectionRow("[B]", Child(2, {PropertyRow("Y", "2"),
                                                                       PropertyRow("Z", "3")})),
                                           PropertyRow("W", "4")})),
               SectionRow("[C]", Child(1, {PropertyRow("V", "5")}))}),
      ElementsAre("0 [A]", "1 X=1", "1 [B]", "2 Y=2", "2 Z=3", "1 W=4", "0 [C]", "1 V=5"));
}

TEST_F(WriteElementsTest, TheTextOfAPropertyDependsOnNameAndKey) {
  const struct {
    const char* name;
    RowTexts row;
    const char* text;
  } rows[] = {
      {"key like name", {.name = "A", .key = "A", .value = "1"}, "A=1"},
      {"key like name in other case", {.name = "a", .key = "A", .value = "1"}, "A=1"},
      {"key unlike name",
       {.name = "User", .key = "@Total", .value = "Sum(Price)"},
       "User=@Total;Sum(Price)"},
      {"no key", {.name = "A", .value = "1"}, "A=;1"},
      {"blank name", {.name = "  ", .key = "K", .value = "1"}, "K=1"},
      {"no name", {.key = "K", .value = "1"}, "K=1"},
      {"blank name and key", {.name = " ", .key = "  ", .value = "1"}, ""},
      {"no name and no key", {.value = "1"}, ""},
      {"untrimmed texts", {.name = " A", .key = " K ", .value = " 1 "}, " A= K ; 1 "},
      {"no value", {.name = "A", .key = "A"}, "A="},
      {"section", SectionRow("[Line]"), "[Line]"},
      {"section with value and other key", {.name = "[A]", .key = "7", .value = "x"}, "[A]"},
      {"shortest section", SectionRow("[]"), "[]"},
      {"no closing bracket", {.name = "[Line", .key = "[Line", .value = "1"}, "[Line=1"},
      {"only an opening bracket", {.name = "[", .key = "[", .value = "1"}, "[=1"},
      {"blanks around a section", {.name = " [A] ", .key = " [A] ", .value = "1"}, " [A] =1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_THAT(Written({row.row}), ElementsAre("0 " + std::string(row.text)));
  }
}

TEST_F(WriteElementsTest, OnlyAnUnknownStatusHasNoDescription) {
  const std::string description =
      "(Key=2:Typ=3:PrevName=4:PrevKey=5:PrevTyp=6:NextName=7:NextKey=8:NextTyp=9:PosNr=10);";
  const struct {
    BXStatus status;
    std::string line;
  } rows[] = {{bxsDelete, "D" + description + "1=2;11"},
              {bxsNew, "N" + description + "1=2;11"},
              {bxsUpdate, "U" + description + "1=2;11"},
              {bxsUnknown, "1=2;11"}};
  for (const auto& row : rows) {
    EXPECT_THAT(Written({{row.status, "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"}}, 7),
                ElementsAre("7 " + row.line));
  }
}

TEST_F(WriteElementsTest, ABlankPropertyIsItsDescriptionAlone) {
  EXPECT_THAT(
      Written({{.status = bxsNew, .value = "1"}}),
      ElementsAre(
          "0 N(Key=:Typ=:PrevName=:PrevKey=:PrevTyp=:NextName=:NextKey=:NextTyp=:PosNr=);"));
}

TEST_F(WriteElementsTest, EveryStatusIsWritten) {
  EXPECT_THAT(
      Written({WithStatus(bxsUnknown, SectionRow("[A]", Child(1, {WithStatus(bxsNew, {})}))),
               WithStatus(bxsDelete, SectionRow("[B]"))})
          .size(),
      3);
}

TEST_F(WriteElementsTest, WritingClearsEarlierEntries) {
  engine_.errors.objErrors->Add({ErrorEntry::kFailure, 1, "q", "m"});
  Written({});
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST(WriteElementsFailureTest, EveryLevelAddsItsMessageAndTheRowsStay) {
  FailingEngine engine;
  const Ref<Level> level = LevelOf(
      engine.context, 0,
      {PropertyRow("A", "1"),
       SectionRow("[B]",
                  LevelOf(engine.context, 2, {PropertyRow("X", "1"), PropertyRow("Y", "2")}))});
  engine.loop.FailAt(4, kInvalidCall);
  Ref<WriteTable> lines;
  EXPECT_EQ(FailureNumber([&] { level->PrepareWriting(lines, 0); }), kInvalidCall);
  EXPECT_THAT(Entries(engine.errors),
              ElementsAre(EntryText(5, "BXLevel2 Prozedur: BXLevelBasis_PrepareWriting"),
                          EntryText(5, "BXLevel0 Prozedur: BXLevelBasis_PrepareWriting",
                                    "Fehler beim Vorbereiten des Schreibvorganges.")));
  EXPECT_THAT(WriteRows(lines), ElementsAre("0 A=1", "0 [B]", "2 X=1"));
}

}  // namespace
}  // namespace tessary
