#include "engine/find_element.h"

#include <gtest/gtest.h>

#include "support/engine_fixture.h"

namespace tessary {
namespace {

class FindElementTest : public testing::TestWithParam<int> {
 protected:
  // Arrays are scanned or indexed depending on their size: rows of another name go in front.
  std::int32_t Find(std::initializer_list<RowTexts> rows, const RowTexts& wanted) {
    const Ref<ElementTable> table = TableOf(engine_.context, {});
    TextPool& pool = *engine_.context->pool();
    for (int n = 0; n < GetParam(); ++n) table->Append(ElementOf(pool, {.name = "filling"}));
    for (const RowTexts& row : rows) table->Append(ElementOf(pool, row));
    std::int32_t found = 0;
    for (int n = 0; n < 10; ++n) found = FindElement(table, KeyOf(pool, wanted));
    return found == 0 ? 0 : found - GetParam();
  }

  TestEngine engine_;
};

TEST_P(FindElementTest, NoArrayAndAnEmptyArrayHoldNothing) {
  EXPECT_EQ(FindElement(nullptr, {}), 0);
  EXPECT_EQ(FindElement(TableOf(engine_.context, {}), {}), 0);
}

TEST_P(FindElementTest, NameKeyAndTypeMustMatchWithoutRegardToCase) {
  const RowTexts element{.name = "Name", .key = "Key", .typ = "Typ"};
  const struct {
    const char* name;
    RowTexts wanted;
    int row;
  } rows[] = {
      {"all equal", {.name = "Name", .key = "Key", .typ = "Typ"}, 1},
      {"other case", {.name = "NAME", .key = "kEY", .typ = "tYP"}, 1},
      {"name occurs once but the key differs", {.name = "Name", .key = "x", .typ = "Typ"}, 0},
      {"empty key", {.name = "Name", .typ = "Typ"}, 0},
      {"empty type", {.name = "Name", .key = "Key"}, 0},
      {"other name", {.name = "x", .key = "Key", .typ = "Typ"}, 0},
      {"position plays no part for a single one",
       {.name = "Name", .key = "Key", .typ = "Typ", .prev_name = "x", .pos_nr = "3"},
       1},
  };
  for (const auto& row : rows) EXPECT_EQ(Find({element}, row.wanted), row.row) << row.name;
}

TEST_P(FindElementTest, NextNameIsNoCriterion) {
  EXPECT_EQ(Find({{.name = "A", .next_name = "x"}, {.name = "A", .next_name = "y"}},
                 {.name = "A", .next_name = "y"}),
            1);
}

TEST_P(FindElementTest, AColumnThatLeavesNothingEndsTheSearchWithTheFirstCandidate) {
  EXPECT_EQ(Find({{.name = "A", .prev_name = "x"}, {.name = "A", .prev_name = "y"}}, {.name = "A"}),
            1);
  // The number would tell them apart, but the previous name comes first and fits none.
  EXPECT_EQ(Find({{.name = "A", .prev_name = "x", .pos_nr = "1"},
                  {.name = "A", .prev_name = "y", .pos_nr = "2"}},
                 {.name = "A", .prev_name = "z", .pos_nr = "2"}),
            1);
  // Of the two that fit in the first columns the first is kept when a later one fits none.
  EXPECT_EQ(Find({{.name = "A", .prev_name = "x"},
                  {.name = "A", .prev_name = "y", .next_key = "1", .pos_nr = "1"},
                  {.name = "A", .prev_name = "y", .next_key = "2", .pos_nr = "2"}},
                 {.name = "A", .prev_name = "y", .next_key = "3", .pos_nr = "2"}),
            2);
}

TEST_P(FindElementTest, AnEmptyPositionPrefersElementsWithoutOne) {
  EXPECT_EQ(Find({{.name = "A", .prev_name = "x"}, {.name = "A"}}, {.name = "A"}), 2);
}

TEST_P(FindElementTest, EveryPositionColumnButTheNextNameCounts) {
  const RowTexts wanted{.name = "A",
                        .prev_name = "1",
                        .prev_key = "2",
                        .prev_typ = "3",
                        .next_name = "4",
                        .next_key = "5",
                        .next_typ = "6",
                        .pos_nr = "7"};
  const struct {
    const char* column;
    std::string_view RowTexts::*text;
    int row;
  } rows[] = {
      {"previous name", &RowTexts::prev_name, 2}, {"previous key", &RowTexts::prev_key, 2},
      {"previous type", &RowTexts::prev_typ, 2},  {"next name", &RowTexts::next_name, 1},
      {"next key", &RowTexts::next_key, 2},       {"next type", &RowTexts::next_typ, 2},
      {"number", &RowTexts::pos_nr, 2},
  };
  for (const auto& row : rows) {
    RowTexts other = wanted;
    other.*row.text = "x";
    EXPECT_EQ(Find({other, wanted}, wanted), row.row) << row.column;
  }
}

TEST_P(FindElementTest, EarlierColumnsCountMoreThanManyLaterOnes) {
  EXPECT_EQ(Find({{.name = "A", .prev_name = "x", .next_key = "k", .next_typ = "t", .pos_nr = "2"},
                  {.name = "A", .prev_name = "p"}},
                 {.name = "A", .prev_name = "p", .next_key = "k", .next_typ = "t", .pos_nr = "2"}),
            2);
}

TEST_P(FindElementTest, OfEqualElementsTheFirstWins) {
  const RowTexts row{.name = "A", .prev_name = "p", .pos_nr = "1"};
  EXPECT_EQ(Find({row, row, row}, row), 1);
}

INSTANTIATE_TEST_SUITE_P(Sizes, FindElementTest, testing::Values(0, 30),
                         [](const auto& size) { return size.param == 0 ? "scanned" : "indexed"; });

}  // namespace
}  // namespace tessary
