#include "engine/element_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;

class ElementTableTest : public testing::Test {
 protected:
  Ref<ElementTable> Named(std::initializer_list<std::string_view> names) {
    Ref<ElementTable> table = TableOf(engine_.context, {});
    for (const std::string_view name : names) table->Append(Named(name));
    return table;
  }
  Element Named(std::string_view name) { return ElementOf(pool(), {.name = name}); }
  std::vector<std::string> Names(const Ref<ElementTable>& table) { return Column(table, bxeaName); }
  TextPool& pool() { return *engine_.context->pool(); }

  TestEngine engine_;
};

TEST_F(ElementTableTest, AnArrayIsEmptyWithoutObjectOrRows) {
  EXPECT_TRUE(IsArrayEmpty(nullptr));
  EXPECT_TRUE(IsArrayEmpty(Named({})));
  EXPECT_FALSE(IsArrayEmpty(Named({"A"})));
}

TEST_F(ElementTableTest, RowsCountFromOne) {
  const Ref<ElementTable> table = Named({"A", "B"});
  EXPECT_EQ(table->rows(), 2);
  EXPECT_EQ(pool().Text(table->Row(1).key[bxeaName]), "A");
  EXPECT_EQ(pool().Text(table->Row(2).key[bxeaName]), "B");
}

TEST_F(ElementTableTest, ARowNumberOutsideTheArrayIsError9) {
  for (const bool edited : {false, true}) {
    const Ref<ElementTable> table = Named({"A", "B", "C"});
    if (edited) table->Delete(1);
    for (const std::int32_t row : {INT32_MIN, -1, 0, table->rows() + 1, INT32_MAX}) {
      SCOPED_TRACE(row);
      EXPECT_EQ(FailureNumber([&] { table->Row(row); }), kSubscriptOutOfRange);
      EXPECT_EQ(FailureNumber([&] { table->Delete(row); }), kSubscriptOutOfRange);
      EXPECT_EQ(FailureNumber([&] { table->SetText(row, bxeaName, Symbol::kEmpty); }),
                kSubscriptOutOfRange);
      EXPECT_EQ(FailureNumber([&] { table->SetValue(row, "x"); }), kSubscriptOutOfRange);
      EXPECT_EQ(FailureNumber([&] { table->SetStatus(row, bxsNew); }), kSubscriptOutOfRange);
      EXPECT_EQ(FailureNumber([&] { table->SetChild(row, nullptr); }), kSubscriptOutOfRange);
      if (row == table->rows() + 1) continue;
      EXPECT_EQ(FailureNumber([&] { table->Insert(row, Named("x")); }), kSubscriptOutOfRange);
    }
    EXPECT_EQ(table->rows(), edited ? 2 : 3);
  }
}

TEST_F(ElementTableTest, AnEmptyArrayHasNoRowToDelete) {
  EXPECT_EQ(FailureNumber([&] { Named({})->Delete(1); }), kSubscriptOutOfRange);
  EXPECT_EQ(FailureNumber([&] { Named({})->Row(0); }), kSubscriptOutOfRange);
}

TEST_F(ElementTableTest, InsertedRowsTakeTheirNumber) {
  const Ref<ElementTable> table = Named({"A", "B"});
  table->Insert(1, Named("first"));
  table->Insert(3, Named("middle"));
  table->Insert(5, Named("last"));
  EXPECT_THAT(Names(table), ElementsAre("first", "A", "middle", "B", "last"));
  table->Append(Named("behind"));
  table->Settle();
  EXPECT_THAT(Names(table), ElementsAre("first", "A", "middle", "B", "last", "behind"));
}

TEST_F(ElementTableTest, DeletedRowsCloseTheirGap) {
  const Ref<ElementTable> table = Named({"A", "B", "C", "D"});
  table->Delete(4);
  table->Delete(1);
  table->Delete(2);
  EXPECT_THAT(Names(table), ElementsAre("B"));
  table->Delete(1);
  EXPECT_EQ(table->rows(), 0);
  table->Append(Named("E"));
  EXPECT_THAT(Names(table), ElementsAre("E"));
  table->DeleteAll();
  EXPECT_TRUE(IsArrayEmpty(table));
}

TEST_F(ElementTableTest, MarkedRowsGoInOnePass) {
  const struct {
    std::vector<std::uint8_t> marked;
    std::vector<std::string> left;
  } rows[] = {
      {{0, 0, 0, 0}, {"A", "B", "C", "D"}}, {{1, 0, 0, 0}, {"B", "C", "D"}},
      {{0, 0, 0, 1}, {"A", "B", "C"}},      {{0, 1, 1, 0}, {"A", "D"}},
      {{1, 0, 1, 0}, {"B", "D"}},           {{1, 1, 1, 1}, {}},
  };
  for (const auto& row : rows) {
    const Ref<ElementTable> table = Named({"A", "B", "C", "D"});
    table->DeleteMarked(row.marked);
    EXPECT_EQ(Names(table), row.left);
    const Ref<ElementTable> edited = Named({"x", "A", "B", "C", "D"});
    edited->Delete(1);
    edited->DeleteMarked(row.marked);
    EXPECT_EQ(Names(edited), row.left);
  }
}

TEST_F(ElementTableTest, SortingByStatusKeepsTheOrderWithinAStatus) {
  const Ref<ElementTable> table = TableOf(engine_.context, {{bxsUnknown, "a"},
                                                            {bxsUpdate, "b"},
                                                            {bxsNew, "c"},
                                                            {bxsDelete, "d"},
                                                            {bxsNew, "e"},
                                                            {bxsUnknown, "f"},
                                                            {bxsDelete, "g"},
                                                            {bxsUpdate, "h"}});
  table->SortByStatus();
  EXPECT_THAT(Names(table), ElementsAre("d", "g", "c", "e", "b", "h", "a", "f"));
  table->SortByStatus();
  EXPECT_THAT(Names(table), ElementsAre("d", "g", "c", "e", "b", "h", "a", "f"));
}

TEST_F(ElementTableTest, ChangedCellsStayWithTheirRow) {
  const Ref<ElementTable> table = Named({"A", "B", "C"});
  table->SetText(2, bxeaPosNr, pool().Intern("7"));
  table->SetValue(2, std::string("Wert"));
  table->SetStatus(2, bxsUpdate);
  const Ref<Level> child = engine_.NewLevel(3);
  table->SetChild(2, child);
  table->Delete(1);
  table->Insert(1, Named("X"));
  table->Settle();
  EXPECT_THAT(Column(table, bxeaPosNr), ElementsAre("", "7", ""));
  EXPECT_THAT(Column(table, bxeaValue), ElementsAre("", "Wert", ""));
  EXPECT_THAT(Column(table, bxeaStatus), ElementsAre("-", "U", "-"));
  EXPECT_EQ(table->Row(2).child, child);
  EXPECT_FALSE(table->Row(1).HasChild());
}

TEST_F(ElementTableTest, FindNameTakesTheFirstRowWithoutRegardToCase) {
  const Ref<ElementTable> table = Named({"A", "b", "B", "a"});
  EXPECT_EQ(table->FindName(pool().Intern("B")), 2);
  EXPECT_EQ(table->FindName(pool().Intern("a")), 1);
  EXPECT_EQ(table->FindName(pool().Intern("c")), 0);
  table->Delete(2);
  EXPECT_EQ(table->FindName(pool().Intern("B")), 2);
  table->Delete(2);
  EXPECT_EQ(table->FindName(pool().Intern("B")), 0);
}

// Only where memory can hold such a text; it is not looked at here.
TEST_F(ElementTableTest, AValueIsNeverCutOff) {
  Element element;
  element.set_value("abc");
  constexpr auto kTooLong = static_cast<std::size_t>(std::uint64_t{UINT32_MAX} + 3);
  const std::string_view text("x", kTooLong);
  if (kTooLong < 3) return;
  EXPECT_EQ(FailureNumber([&] { element.set_value(text); }), kOutOfMemory);
  EXPECT_EQ(element.value(), "abc");
}

}  // namespace
}  // namespace tessary
