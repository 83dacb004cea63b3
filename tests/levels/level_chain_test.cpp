// What all ten level classes have in common.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/failure.h"
#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

AddArguments Line(std::string_view text, BXLineType type) {
  AddArguments arguments = ArgumentsOf({.name = text});
  arguments.bxltLineType = type;
  return arguments;
}

class LevelChainTest : public testing::TestWithParam<int> {
 protected:
  std::string ClassName() const { return "BXLevel" + std::to_string(GetParam()); }
  std::string Dumped() const { return Dump(level_->ElementArray()); }

  TestEngine engine_;
  Ref<Level> level_ = engine_.NewLevel(GetParam());
};

TEST_P(LevelChainTest, KnowsItsClass) { EXPECT_EQ(level_->ClassNumber(), GetParam()); }

TEST_P(LevelChainTest, ASectionIsKeyedByItsHeaderUnlessAKeyIsGiven) {
  level_->Add(Line("[Object]", bxltSection));
  AddArguments keyed = Line("[Other]", bxltSection);
  keyed.strKey = "7";
  keyed.bxsStatus = bxsNew;
  level_->Add(keyed);
  EXPECT_EQ(Dumped(), "- [Object]|[Object]|||||||||\nN [Other]|7|||||||||\n");
}

TEST_P(LevelChainTest, APropertyLineIsTakenApart) {
  AddArguments line = Line("Width = 10", bxltProperty);
  line.strKey = "given";
  line.strValue = "given";
  level_->Add(line);
  EXPECT_EQ(Dumped(), "- Width|Width||||||||| 10\n");
}

TEST_P(LevelChainTest, ANumberedVariableIsKnownByItsOwnName) {
  level_->Add(Line("User3=@Total;Sum(Price)", bxltProperty));
  EXPECT_EQ(Dumped(), "- User|@Total|||||||||Sum(Price)\n");
}

TEST_P(LevelChainTest, OtherLinesAreStoredAsGiven) {
  AddArguments line = Line("Width=10", bxltUnknown);
  line.strTyp = "T";
  line.strValue = "V";
  level_->Add(line);
  EXPECT_EQ(Dumped(), "- Width=10||T||||||||V\n");
}

TEST_P(LevelChainTest, NeighboursAreKnownByTheTextsAfterSplitting) {
  level_->Add(Line("Width=10", bxltProperty));
  level_->Add(Line("[Line]", bxltSection));
  EXPECT_EQ(Dumped(), "- Width|Width|||||[Line]|[Line]|||10\n- [Line]|[Line]||Width|Width||||||\n");
}

TEST_P(LevelChainTest, EveryElementHasAChildOfTheNextClass) {
  const int child_class = std::min(GetParam() + 1, 9);
  for (const BXLineType type : {bxltSection, bxltProperty, bxltUnknown}) {
    level_->Add(Line("[A]", type));
    const Ref<Level> child = level_->LastElement();
    ASSERT_TRUE(child);
    EXPECT_EQ(child->ClassNumber(), child_class);
    EXPECT_EQ(level_->LastElement(), child);
    EXPECT_FALSE(child->ElementArray());
  }
}

TEST_P(LevelChainTest, AGivenChildIsStored) {
  AddArguments line = Line("[A]", bxltSection);
  line.objLevel = engine_.NewLevel(4);
  level_->Add(line);
  EXPECT_EQ(level_->LastElement(), line.objLevel);
  EXPECT_EQ(level_->ElementArray()->Row(1).child, line.objLevel);
}

TEST_P(LevelChainTest, TheArrayIsTheInnerObjects) {
  EXPECT_FALSE(level_->ElementArray());
  EXPECT_EQ(FailureNumber([&] { level_->LastElement(); }), kObjectNotSet);
  const Ref<ElementTable> table = TableOf(engine_.context, {});
  level_->SetElementArray(table);
  EXPECT_EQ(FailureNumber([&] { level_->LastElement(); }), kSubscriptOutOfRange);
  level_->Add(Line("[A]", bxltSection));
  EXPECT_EQ(level_->ElementArray(), table);
  EXPECT_EQ(table->rows(), 1);
}

TEST_P(LevelChainTest, RowsAreWrittenAsTheClassesOwnLevel) {
  level_->Add(Line("X=1", bxltProperty));
  level_->LastElement()->Add(Line("Y=2", bxltProperty));
  Ref<WriteTable> lines;
  level_->PrepareWriting(lines, 7);
  EXPECT_THAT(WriteRows(lines), ElementsAre(std::to_string(GetParam()) + " X=1",
                                            std::to_string(std::min(GetParam() + 1, 9)) + " Y=2"));
}

TEST_P(LevelChainTest, TwoEmptyListsAreNotCompared) {
  engine_.errors.objErrors->Add({ErrorEntry::kFailure, 1, "q", "m"});
  level_->Compare(nullptr, nullptr);
  level_->Compare(TableOf(engine_.context, {}), TableOf(engine_.context, {}));
  EXPECT_FALSE(level_->ElementArray());
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST_P(LevelChainTest, ComparingTakesOverOrComparesInPairs) {
  const auto lines = [&](std::initializer_list<std::string_view> texts) {
    const Ref<Level> level = engine_.NewLevel(GetParam());
    for (const std::string_view text : texts) level->Add(Line(text, bxltProperty));
    return level->ElementArray();
  };
  level_->Compare(lines({"A=1", "B=2", "C=3"}), lines({"A=1", "C=4", "D=5"}));
  EXPECT_THAT(Brief(level_->ElementArray()), ElementsAre("N D|D|5", "D B|B|2", "U C|C|4"));
  level_ = engine_.NewLevel(GetParam());
  level_->Compare(nullptr, lines({"A=1"}));
  EXPECT_THAT(Brief(level_->ElementArray()), ElementsAre("N A|A|A"));
}

TEST_P(LevelChainTest, OnlyTheLastClassDoesNotCompareContents) {
  const auto tree = [&](std::string_view value) {
    const Ref<Level> level = engine_.NewLevel(GetParam());
    level->Add(Line("[A]", bxltSection));
    level->LastElement()->Add(Line(value, bxltProperty));
    return level->ElementArray();
  };
  level_->Compare(tree("X=1"), tree("X=2"));
  EXPECT_EQ(level_->ElementArray()->rows(), GetParam() == 9 ? 0 : 1);
}

TEST_P(LevelChainTest, AFailureOfAddIsReportedOnceForTheClass) {
  AddArguments numbered = Line("[A]", bxltSection);
  numbered.strPosNr = "abc";
  level_->Add(numbered);
  EXPECT_EQ(FailureNumber([&] { level_->Add(Line("[A]", bxltSection)); }), kTypeMismatch);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(13, "BXLevelBasis Prozedur: CheckValuesAround"),
                          EntryText(13, ClassName() + " Prozedur: BXLevelBasis_Add",
                                    "Fehler beim Hinzufügen eines Elementes.")));
  level_->Add(Line("[B]", bxltSection));
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

// The class's own exit, "BXLevelBasis_Add" in BXLevel0 and "BXLevelBasis_Compare" in the others,
// adds nothing because the step that failed has already described the failure.
TEST_P(LevelChainTest, AFailureOfCompareIsDescribedByItsStep) {
  if (GetParam() == 9) return;  // compares no contents
  const auto section = [&] { return TableOf(engine_.context, {SectionRow("[A]")}); };
  EXPECT_EQ(FailureNumber([&] { level_->Compare(section(), section()); }), kObjectNotSet);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(91, ClassName() + " Prozedur: BXLevelBasis_CompareElements")));
}

TEST_P(LevelChainTest, TheStepsOfAComparisonAreForwarded) {
  const auto table = [&](std::string_view name) {
    return TableOf(engine_.context, {{.name = name, .value = "1"}});
  };
  EXPECT_FALSE(level_->CheckForAddingAllElements(table("A"), table("A")));
  level_->CheckMissingElements(table("A"), table("B"), bxsNew);
  level_->CompareElements(table("A"), TableOf(engine_.context, {{.name = "A", .value = "2"}}), "");
  EXPECT_TRUE(level_->CheckForAddingAllElements(table("Z"), nullptr));
  EXPECT_THAT(Brief(level_->ElementArray()), ElementsAre("N A||1", "U A||2", "D Z||Z"));
}

TEST_P(LevelChainTest, ConvertIsForwarded) {
  const Ref<ElementTable> report = TableOf(engine_.context, {{.name = "A"}});
  level_->Convert(report, TableOf(engine_.context, {{.status = bxsNew, .name = "B"}}));
  EXPECT_EQ(level_->ElementArray(), report);
  EXPECT_THAT(Column(report, bxeaName), ElementsAre("A", "B"));
}

INSTANTIATE_TEST_SUITE_P(Levels, LevelChainTest, testing::Range(0, 10),
                         testing::PrintToStringParamName());

TEST(LevelFactoryTest, OnlyTheTenClassesCanBeCreated) {
  const TestEngine engine;
  for (const int number : {-1, 10, 100}) {
    EXPECT_EQ(FailureNumber([&] { engine.NewLevel(number); }), kCannotCreateObject);
  }
}

}  // namespace
}  // namespace tessary
