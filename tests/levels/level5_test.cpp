// The lines of a table and their numbers.

#include "levels/level5.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Level5Test : public testing::Test {
 protected:
  using Rows = std::initializer_list<RowTexts>;

  void SetRows(Rows rows) { level_->SetElementArray(TableOf(engine_.context, rows)); }
  std::vector<std::string> Cells(BXElementArray column) {
    return Column(level_->ElementArray(), column);
  }
  Ref<Level> Properties(Rows rows) { return LevelOf(engine_.context, 6, rows); }
  // A line with a number, as it is read from a report.
  RowTexts NumberedLine(std::string_view number) {
    return {.name = "[Line]",
            .key = number,
            .child = Properties({PropertyRow("Font", "1"), PropertyRow("LineID", number)})};
  }
  std::int32_t FailureOfConvert(Rows differences) {
    return FailureNumber(
        [&] { level_->Convert(level_->ElementArray(), TableOf(engine_.context, differences)); });
  }
  std::vector<std::string> LineIDs() {
    std::vector<std::string> ids;
    const Ref<ElementTable> lines = level_->ElementArray();
    for (std::int32_t row = 1; row <= lines->rows(); ++row) {
      const Ref<Level>& child = lines->Row(row).child;
      ids.push_back(child ? Column(child->ElementArray(), bxeaValue).back() : "-");
    }
    return ids;
  }

  FailingEngine engine_;
  Ref<BXLevel5> level_ = MakeRef<BXLevel5>(engine_.context);
};

TEST_F(Level5Test, LinesFromTheStartRowOnAreNumbered) {
  SetRows({SectionRow("[Line]"), SectionRow("[LINE]"), {.name = "X"}, SectionRow("[Line]")});
  level_->UpdatePropertyLineID(2, 5);
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("[Line]", "5", "", "6"));
}

TEST_F(Level5Test, NeighboursLearnTheNumber) {
  SetRows(
      {{.name = "A"}, SectionRow("[Line]"), {.name = "X"}, {.name = "Y"}, SectionRow("[Line]")});
  level_->UpdatePropertyLineID(2, 5);
  EXPECT_THAT(Cells(bxeaPosNextKey), ElementsAre("5", "", "", "6", ""));
  EXPECT_THAT(Cells(bxeaPosPrevKey), ElementsAre("", "", "5", "", ""));
}

TEST_F(Level5Test, TheFirstLineIDInsideALineIsSet) {
  SetRows({{.name = "[Line]",
            .child = Properties(
                {PropertyRow("A", "1"), PropertyRow("lineid", "x"), PropertyRow("LineID", "y")})},
           {.name = "[Line]", .child = Properties({PropertyRow("A", "1")})},
           {.name = "[Line]", .child = engine_.context->CreateLevel(6)},
           {.name = "X", .child = Properties({PropertyRow("LineID", "z")})}});
  level_->UpdatePropertyLineID(1, 8);
  EXPECT_THAT(
      Brief(level_->ElementArray()),
      ElementsAre("- [Line]|8|", "  - A|A|1", "  - lineid|lineid|8", "  - LineID|LineID|y",
                  "- [Line]|9|", "  - A|A|1", "- [Line]|10|", "- X||", "  - LineID|LineID|z"));
}

TEST_F(Level5Test, NothingHappensWithoutRowsOrOutsideThem) {
  level_->UpdatePropertyLineID(1, 5);
  EXPECT_FALSE(level_->ElementArray());
  SetRows({});
  level_->UpdatePropertyLineID(1, 5);
  SetRows({SectionRow("[Line]")});
  for (const std::int32_t row : {INT32_MIN, -1, 0, 2, INT32_MAX})
    level_->UpdatePropertyLineID(row, 5);
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("[Line]"));
}

TEST_F(Level5Test, NumbersMayBeNegative) {
  SetRows({SectionRow("[Line]"), SectionRow("[Line]")});
  level_->UpdatePropertyLineID(1, -1);
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("-1", "0"));
}

TEST_F(Level5Test, CountingBeyondTheLastNumberIsError6) {
  SetRows({SectionRow("[Line]"), SectionRow("[Line]")});
  EXPECT_EQ(FailureNumber([&] { level_->UpdatePropertyLineID(1, INT32_MAX); }), kOverflow);
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("2147483647", "[Line]"));
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(6, "BXLevel5 Prozedur: UpdatePropertyLineID")));
  EXPECT_EQ(FailureNumber([&] { level_->UpdatePropertyLineID(2, INT32_MAX); }), kOverflow);
  EXPECT_EQ(FailureNumber([&] { level_->UpdatePropertyLineID(2, INT32_MAX - 1); }), 0);
}

TEST_F(Level5Test, AnInsertedLineTakesItsNumberFromTheLineThatHasIt) {
  SetRows({NumberedLine("2"), NumberedLine("3"), NumberedLine("4"), NumberedLine("9")});
  RowTexts line = WithStatus(bxsNew, NumberedLine("4"));
  line.prev_name = "[Line]";
  line.prev_key = "3";
  level_->Convert(level_->ElementArray(), TableOf(engine_.context, {line}));
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("2", "3", "4", "5", "6"));
  EXPECT_THAT(LineIDs(), ElementsAre("2", "3", "4", "5", "6"));
  // The row before the first renumbered one had its neighbour's key set before the new line came.
  EXPECT_THAT(Cells(bxeaPosNextKey), ElementsAre("", "5", "", "6", ""));
  EXPECT_THAT(Cells(bxeaPosPrevKey), ElementsAre("", "", "", "", "5"));
}

TEST_F(Level5Test, AnInsertedLineOfANewNumberRenumbersNothing) {
  SetRows({NumberedLine("1"), NumberedLine("7")});
  RowTexts line = WithStatus(bxsNew, NumberedLine("4"));
  line.prev_name = "[Line]";
  line.prev_key = "1";
  level_->Convert(level_->ElementArray(), TableOf(engine_.context, {line}));
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("1", "4", "7"));
}

TEST_F(Level5Test, SeveralInsertedLinesPushTheOthersOn) {
  SetRows({NumberedLine("1"), NumberedLine("2"), NumberedLine("3")});
  RowTexts first = WithStatus(bxsNew, NumberedLine("2"));
  RowTexts second = WithStatus(bxsNew, NumberedLine("3"));
  first.prev_name = second.prev_name = "[Line]";
  first.prev_key = "1";
  second.prev_key = "2";
  level_->Convert(level_->ElementArray(), TableOf(engine_.context, {first, second}));
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("1", "2", "3", "4", "5"));
  EXPECT_THAT(LineIDs(), ElementsAre("1", "2", "3", "4", "5"));
}

TEST_F(Level5Test, OtherInsertionsRenumberNothing) {
  SetRows({NumberedLine("1"), {.name = "X", .key = "2"}, NumberedLine("2")});
  level_->Convert(level_->ElementArray(),
                  TableOf(engine_.context, {{.status = bxsNew, .name = "X", .key = "2"}}));
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("1", "2", "2"));
}

TEST_F(Level5Test, ALineWithoutAKeyMovesItsMatchToOne) {
  SetRows({{.name = "[Line]"}});
  level_->Convert(level_->ElementArray(),
                  TableOf(engine_.context, {{.status = bxsNew, .name = "[Line]"}}));
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("1", ""));
}

TEST_F(Level5Test, AKeyThatIsNoNumberFails) {
  const struct {
    const char* key;
    std::int32_t failure;
  } rows[] = {{"[Line]", kTypeMismatch},
              {"abc", kTypeMismatch},
              {"2147483648", kOverflow},
              {"2147483647", kOverflow}};
  for (const auto& row : rows) {
    SetRows({{.name = "[Line]", .key = row.key}});
    EXPECT_EQ(FailureOfConvert({{.status = bxsNew, .name = "[Line]", .key = row.key}}),
              row.failure);
    EXPECT_THAT(Entries(engine_.errors),
                ElementsAre(EntryText(row.failure, "BXLevel5 Prozedur: m_objBasis_BeforeInsert"),
                            EntryText(row.failure, "BXLevel5 Prozedur: BXLevelBasis_Convert",
                                      "Fehler beim Verarbeiten eines Elementes.")));
    EXPECT_THAT(Cells(bxeaKey), ElementsAre(row.key));
  }
}

TEST_F(Level5Test, AKeyThatIsNoNumberDoesNotMatterWithoutAMatch) {
  SetRows({NumberedLine("1")});
  EXPECT_EQ(FailureOfConvert({{.status = bxsNew, .name = "[Line]", .key = "abc"}}), 0);
  EXPECT_THAT(Cells(bxeaKey), ElementsAre("1", "abc"));
}

TEST_F(Level5Test, ARenumberingThatFailsIsReportedByTheRenumbering) {
  SetRows({NumberedLine("2147483646"), NumberedLine("1")});
  EXPECT_EQ(FailureOfConvert({{.status = bxsNew, .name = "[Line]", .key = "2147483646"}}),
            kOverflow);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(6, "BXLevel5 Prozedur: UpdatePropertyLineID"),
                          EntryText(6, "BXLevel5 Prozedur: BXLevelBasis_Convert",
                                    "Fehler beim Verarbeiten eines Elementes.")));
  engine_.loop.FailAt(2, kInvalidCall);
  EXPECT_EQ(FailureNumber([&] { level_->UpdatePropertyLineID(1, 1); }), kInvalidCall);
  EXPECT_THAT(Entries(engine_.errors),
              ElementsAre(EntryText(5, "BXLevel5 Prozedur: UpdatePropertyLineID")));
}

// The properties of a line that cannot be read, as when memory runs out.
class UnreadableLevel : public LevelBase {
 public:
  explicit UnreadableLevel(const Ref<EngineContext>& context) : LevelBase(context, 6) {}
  Ref<ElementTable> ElementArray() override { throw Failure(kOutOfMemory); }
};

TEST_F(Level5Test, ALineWhosePropertiesCannotBeReadIsAFailure) {
  SetRows({SectionRow("[Line]", MakeRef<UnreadableLevel>(engine_.context))});
  EXPECT_EQ(FailureNumber([&] { level_->UpdatePropertyLineID(1, 1); }), kOutOfMemory);
  EXPECT_EQ(FailureNumber([&] { level_->UpdatePropertyLineID(1, INT32_MAX); }), kOverflow);
}

// Others may listen to insertions as well; they hear of them after the level itself.
class Observer : public BeforeInsertHandler {
 public:
  explicit Observer(Level& level) : level_(level) {}
  void BeforeInsert(const Element& element) override {
    const Ref<ElementTable> rows = level_.ElementArray();
    heard.push_back(std::string(rows->pool().Text(element.key[bxeaKey])) +
                    (element.child ? " child" : ""));
    keys = Column(rows, bxeaKey);
  }

  std::vector<std::string> heard;
  std::vector<std::string> keys;

 private:
  Level& level_;
};

TEST_F(Level5Test, AnObserverHearsOfInsertionsAfterTheRenumberingAndBeforeTheNewRow) {
  SetRows({NumberedLine("1"), NumberedLine("2")});
  Observer observer(*level_);
  level_->SetInsertionObserver(&observer);
  level_->Convert(level_->ElementArray(),
                  TableOf(engine_.context, {WithStatus(bxsUpdate, NumberedLine("1")),
                                            WithStatus(bxsNew, NumberedLine("2"))}));
  EXPECT_THAT(observer.heard, ElementsAre("2 child"));
  EXPECT_THAT(observer.keys, ElementsAre("1", "3"));
  level_->SetInsertionObserver(nullptr);
}

}  // namespace
}  // namespace tessary
