// Child levels come into being on first use, and whatever is held keeps alive what it needs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kOldLines = {"[A]", "X=1",      "{",   "[B]", "Y=2", "}",
                                            "Z=3", "[@Lines]", "W=4", "[C]", "V=5"};
const std::vector<std::string> kNewLines = {"[A]", "X=1", "{",   "[B]", "Y=9", "}",
                                            "[D]", "U=6", "[C]", "V=5", "T=7"};

// Asks every row for its child, so that nothing is left that nobody has used.
void TouchChildren(EngineContext& context, const Ref<ElementTable>& tree, int depth) {
  if (IsArrayEmpty(tree) || depth == 0) return;
  for (std::int32_t row = 1; row <= tree->rows(); ++row) {
    const Ref<Level> child = context.ChildOf(*tree, row);
    if (child) TouchChildren(context, child->ElementArray(), depth - 1);
  }
}

class LazyChildrenTest : public testing::TestWithParam<bool> {
 protected:
  Ref<ElementTable> Read(const std::vector<std::string>& lines) {
    const Ref<ElementTable> tree = ReadLines(engine_.context, lines);
    if (GetParam()) TouchChildren(*engine_.context, tree, 10);
    return tree;
  }
  Ref<ElementTable> Compared() {
    const Ref<Level> level = engine_.NewLevel(0);
    level->Compare(Read(kOldLines), Read(kNewLines));
    if (GetParam()) TouchChildren(*engine_.context, level->ElementArray(), 10);
    return level->ElementArray();
  }

  TestEngine engine_;
};

TEST_P(LazyChildrenTest, ChildrenThatNobodyUsedChangeNothing) {
  EXPECT_THAT(Brief(Read(kOldLines)),
              ElementsAre("- [A]|[A]|", "  - X|X|1", "    - [B]|[B]|", "    - Y|Y|2", "  - Z|Z|3",
                          "  - [@Lines]|[@Lines]|", "  - W|W|4", "- [C]|[C]|", "  - V|V|5"));
  EXPECT_THAT(WriteLines(engine_.context, Read(kOldLines)),
              ElementsAre("[A]", " X=1", "  {", "  [B]", "  Y=2", "  }", " Z=3", " [@Lines]",
                          " W=4", "[C]", " V=5"));
  EXPECT_THAT(Brief(Compared()), ElementsAre("N [D]|[D]|", "  - U|U|6", "U [A]|[A]|", "  D Z|Z|3",
                                             "  D [@Lines]|[@Lines]|", "  D W|W|4", "  U X|X|1",
                                             "    U Y|Y|9", "U [C]|[C]|", "  N T|T|7"));
}

TEST_P(LazyChildrenTest, ChildrenThatNobodyUsedTakePartInConverting) {
  const Ref<ElementTable> report = Read({"[A]", "X=1", "Z=3", "[C]", "V=5", "[E]"});
  const Ref<Level> level = engine_.NewLevel(0);
  level->Convert(report, Compared());
  EXPECT_THAT(Brief(level->ElementArray()),
              ElementsAre("- [A]|[A]|", "  - X|X|1", "- [D]|[D]|", "  - U|U|6", "- [C]|[C]|",
                          "  - V|V|5", "  - T|T|7", "- [E]|[E]|"));
  EXPECT_THAT(Entries(engine_.errors), IsEmpty());
}

TEST_P(LazyChildrenTest, EveryRowHasAChild) {
  const Ref<ElementTable> tree = Read(kOldLines);
  const Ref<Level> first = tree->Row(1).child;
  ASSERT_TRUE(first);
  for (std::int32_t row = 1; row <= first->ElementArray()->rows(); ++row) {
    EXPECT_TRUE(first->ElementArray()->Row(row).HasChild());
  }
}

INSTANTIATE_TEST_SUITE_P(Children, LazyChildrenTest, testing::Bool(),
                         [](const auto& used) { return used.param ? "used" : "unused"; });

TEST(LazyChildrenTest, AChildIsOneObjectFromItsFirstUseOn) {
  TestEngine engine;
  const Ref<ElementTable> tree = ReadLines(engine.context, {"[A]", "X=1"});
  const Ref<Level> section = tree->Row(1).child;
  EXPECT_FALSE(section->ElementArray()->Row(1).child);
  const Ref<Level> child = section->LastElement();
  ASSERT_TRUE(child);
  EXPECT_EQ(section->LastElement(), child);
  EXPECT_EQ(engine.context->ChildOf(*section->ElementArray(), 1), child);
  section->ElementArray()->SetChild(1, nullptr);
  EXPECT_FALSE(section->LastElement());
}

// The sanitizers see to it that nothing is read after it has gone.
class LifetimeTest : public testing::Test {
 protected:
  // Everything but what `part` takes from the tree is gone afterwards.
  template <class Part>
  auto Held(Part part) {
    const Ref<EngineContext> context = NewEngineContext(errors_, nullptr);
    return part(ReadLines(context, kOldLines));
  }

  SharedErrors errors_;
};

TEST_F(LifetimeTest, AnArrayKeepsItsTexts) {
  const Ref<ElementTable> tree = Held([](const Ref<ElementTable>& read) { return read; });
  EXPECT_THAT(Column(tree, bxeaName), ElementsAre("[A]", "[C]"));
  EXPECT_EQ(Brief(tree).size(), 9);
}

TEST_F(LifetimeTest, ALevelKeepsItsTextsAndCanGoOn) {
  const Ref<Level> level = Held([](const Ref<ElementTable>& read) { return read->Row(2).child; });
  EXPECT_THAT(Brief(level->ElementArray()), ElementsAre("- V|V|5"));
  level->Add(ArgumentsOf(PropertyRow("New", "6")));
  EXPECT_EQ(level->LastElement()->ClassNumber(), 2);
  EXPECT_THAT(Brief(level->ElementArray()), ElementsAre("- V|V|5", "- New|New|6"));
}

TEST_F(LifetimeTest, ADeletedRowsChildLivesAsLongAsItIsHeld) {
  const Ref<Level> level = Held([](const Ref<ElementTable>& read) {
    const Ref<Level> child = read->Row(1).child;
    read->Delete(1);
    return child;
  });
  EXPECT_EQ(Brief(level->ElementArray()).size(), 6);
}

TEST_F(LifetimeTest, AResultOutlivesWhatWasCompared) {
  const Ref<EngineContext> context = NewEngineContext(errors_, nullptr);
  Ref<ElementTable> result;
  {
    const Ref<Level> level = context->CreateLevel(0);
    level->Compare(ReadLines(context, kOldLines), ReadLines(context, kNewLines));
    result = level->ElementArray();
  }
  EXPECT_EQ(Brief(result).size(), 10);
}

TEST_F(LifetimeTest, AnElementCopiedFromARowKeepsItsChild) {
  const Element element = Held([](const Ref<ElementTable>& read) { return Element(read->Row(2)); });
  EXPECT_THAT(Brief(element.child->ElementArray()), ElementsAre("- V|V|5"));
}

}  // namespace
}  // namespace tessary
