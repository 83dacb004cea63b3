// The check of lists whose order matters, by key and place.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"

namespace tessary {
namespace {

using Names = std::vector<std::string>;

struct RunCase {
  const char* name;
  BXStatus status;
  std::int32_t start;
  Names source;
  Names dest;
  Names recorded;  // status and key
  Names source_left;
  Names dest_left;
};

class RunCheckTest : public testing::Test {
 protected:
  // Rows of one name, each with a child.
  Ref<ElementTable> Run(const Names& keys) {
    const Ref<ElementTable> table = TableOf(engine_.context, {});
    for (const std::string& key : keys) {
      table->Append(ElementOf(*engine_.context->pool(),
                              {.name = "[Line]", .key = key, .child = engine_.NewLevel(4)}));
    }
    return table;
  }
  Names Recorded() {
    Names texts = Column(basis_->ElementArray(), bxeaStatus);
    const Names keys = Column(basis_->ElementArray(), bxeaKey);
    for (std::size_t n = 0; n < texts.size(); ++n) texts[n] += " " + keys[n];
    return texts;
  }

  TestEngine engine_;
  Ref<BXLevelBasis> basis_;
};

TEST_F(RunCheckTest, SurplusFirstThenWhatWasReplaced) {
  const RunCase cases[] = {
      {"equal runs", bxsNew, 1, {"1", "2"}, {"1", "2"}, {}, {"1", "2"}, {"1", "2"}},
      {"keys in other case", bxsNew, 1, {"a", "B"}, {"A", "b"}, {}, {"a", "B"}, {"A", "b"}},
      {"one new in the middle",
       bxsNew,
       1,
       {"1", "x", "2"},
       {"1", "2"},
       {"N x"},
       {"1", "2"},
       {"1", "2"}},
      {"one new in front", bxsNew, 1, {"x", "1", "2"}, {"1", "2"}, {"N x"}, {"1", "2"}, {"1", "2"}},
      {"one new at the end",
       bxsNew,
       1,
       {"1", "2", "x"},
       {"1", "2"},
       {"N x"},
       {"1", "2"},
       {"1", "2"}},
      {"two new apart",
       bxsNew,
       1,
       {"x", "1", "y", "2"},
       {"1", "2"},
       {"N x", "N y"},
       {"1", "2"},
       {"1", "2"}},
      {"one deleted", bxsDelete, 1, {"1", "x", "2"}, {"1", "2"}, {"D x"}, {"1", "2"}, {"1", "2"}},
      {"several deleted",
       bxsDelete,
       1,
       {"1", "2", "3", "4"},
       {"3"},
       {"D 1", "D 2", "D 4"},
       {"3"},
       {"3"}},
      {"the surplus ends the search",
       bxsNew,
       1,
       {"x", "y", "1"},
       {"1", "2"},
       {"N x", "N y", "D 1", "N 1", "D 2"},
       {},
       {}},
      {"one replaced, new side is the source",
       bxsNew,
       1,
       {"1", "x", "3"},
       {"1", "2", "3"},
       {"N x", "D 2"},
       {"1", "3"},
       {"1", "3"}},
      {"one replaced, old side is the source",
       bxsDelete,
       1,
       {"1", "2", "3"},
       {"1", "x", "3"},
       {"N x", "D 2"},
       {"1", "3"},
       {"1", "3"}},
      {"two exchanged places",
       bxsNew,
       1,
       {"2", "1"},
       {"1", "2"},
       {"N 2", "D 1", "N 1", "D 2"},
       {},
       {}},
      {"surplus and replacement",
       bxsNew,
       1,
       {"x", "1", "y"},
       {"1", "2"},
       {"N x", "N y", "D 2"},
       {"1"},
       {"1"}},
      {"an empty source", bxsNew, 1, {}, {"1"}, {}, {}, {"1"}},
      {"an empty destination", bxsNew, 1, {"1", "2"}, {}, {"N 1", "N 2"}, {}, {}},
      {"a shorter source leaves the destination's end alone",
       bxsNew,
       1,
       {"1"},
       {"1", "2"},
       {},
       {"1"},
       {"1", "2"}},
      {"rows before the start do not count",
       bxsNew,
       2,
       {"a", "x", "1"},
       {"b", "1"},
       {"N x"},
       {"a", "1"},
       {"b", "1"}},
      {"replaced behind the start",
       bxsDelete,
       2,
       {"a", "1"},
       {"b", "2"},
       {"N 2", "D 1"},
       {"a"},
       {"b"}},
      {"a start behind the end", bxsNew, 9, {"1", "2"}, {"3"}, {}, {"1", "2"}, {"3"}},
      {"empty keys fit rows behind the end",
       bxsNew,
       1,
       {"1", "", ""},
       {"1"},
       {},
       {"1", "", ""},
       {"1"}},
      {"an empty key before the end does not fit",
       bxsNew,
       1,
       {"", "1"},
       {"1"},
       {"N "},
       {"1"},
       {"1"}},
  };
  for (const RunCase& run : cases) {
    SCOPED_TRACE(run.name);
    basis_ = NewBasis(engine_.context, "BXLevel3");
    const Ref<ElementTable> source = Run(run.source);
    const Ref<ElementTable> dest = Run(run.dest);
    basis_->CheckMissingSpecialElements(source, dest, run.status, run.start);
    EXPECT_EQ(Recorded(), run.recorded);
    EXPECT_EQ(Column(source, bxeaKey), run.source_left);
    EXPECT_EQ(Column(dest, bxeaKey), run.dest_left);
    for (std::int32_t row = 1; basis_->ElementArray() && row <= basis_->ElementArray()->rows();
         ++row) {
      const Element& element = basis_->ElementArray()->Row(row);
      EXPECT_EQ(element.HasChild(), element.status == bxsNew) << row;
    }
  }
}

TEST_F(RunCheckTest, OnlyTheKeyCounts) {
  basis_ = NewBasis(engine_.context, "BXLevel3");
  const Ref<ElementTable> source =
      TableOf(engine_.context, {{.name = "A", .key = "1", .typ = "T"}});
  const Ref<ElementTable> dest =
      TableOf(engine_.context, {{.name = "B", .key = "1", .pos_nr = "5"}});
  basis_->CheckMissingSpecialElements(source, dest, bxsNew, 1);
  EXPECT_EQ(Recorded(), Names{});
}

TEST_F(RunCheckTest, RecordedRowsKeepTheirColumns) {
  basis_ = NewBasis(engine_.context, "BXLevel3");
  const Ref<ElementTable> source = TableOf(
      engine_.context, {{bxsUnknown, "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"}});
  basis_->CheckMissingSpecialElements(source, TableOf(engine_.context, {{.name = "L", .key = "x"}}),
                                      bxsNew, 1);
  EXPECT_EQ(Dump(basis_->ElementArray()), "N 1|2|3|4|5|6|7|8|9|10|11\nD L|x|||||||||\n");
}

}  // namespace
}  // namespace tessary
