// From the write array to lines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/report_file.h"
#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

struct WriteRow {
  int level;
  const char* text;
};
using GivenRows = std::vector<WriteRow>;

// A top level that writes given rows, whatever its elements.
class GivenLevel : public Level {
 public:
  static inline const GivenRows* rows = nullptr;
  static inline std::int32_t failure = 0;
  static inline int calls = 0;

  void PrepareWriting(Ref<WriteTable>& aWrite, std::int32_t) override {
    ++calls;
    if (failure != 0) throw Failure(failure);
    if (!rows) return;
    aWrite = MakeRef<WriteTable>();
    for (const WriteRow& row : *rows) aWrite->Append(row.level, row.text);
  }

  void Add(const AddArguments&) override {}
  void SetElementArray(Ref<ElementTable>) override {}
  Ref<ElementTable> ElementArray() override { return nullptr; }
  Ref<Level> LastElement() override { return nullptr; }
  void Compare(const Ref<ElementTable>&, const Ref<ElementTable>&) override {}
  void CompareElements(const Ref<ElementTable>&, const Ref<ElementTable>&,
                       std::string_view) override {}
  void CheckMissingElements(const Ref<ElementTable>&, const Ref<ElementTable>&, BXStatus) override {
  }
  bool CheckForAddingAllElements(const Ref<ElementTable>&, const Ref<ElementTable>&) override {
    return false;
  }
  bool GetFoundFieldValue(FoundField&) override { return false; }
  void Convert(const Ref<ElementTable>&, const Ref<ElementTable>&) override {}
  void SetInsertionObserver(BeforeInsertHandler*) override {}
};

Lines AllLines(BXReportFile& store) {
  Lines lines;
  for (std::string line = store.GetFirstLine(); !line.empty(); line = store.GetNextLine()) {
    lines.push_back(line);
  }
  return lines;
}

class ReportFileWriteTest : public testing::Test {
 protected:
  ReportFileWriteTest() {
    GivenLevel::rows = nullptr;
    GivenLevel::failure = 0;
    GivenLevel::calls = 0;
  }

  Lines Written(const GivenRows& rows) {
    GivenLevel::rows = &rows;
    BXReportFile store(context_);
    return AllLines(store);
  }

  SharedErrors errors_;
  Ref<EngineContext> context_ = MakeRef<EngineContext>(
      errors_, nullptr,
      [](const Ref<EngineContext>&, int) { return Ref<Level>(MakeRef<GivenLevel>()); });
};

TEST_F(ReportFileWriteTest, RowsComeOutWithIndentationAndBraces) {
  const struct {
    const char* name;
    GivenRows rows;
    Lines lines;
  } cases[] = {
      {"one section", {{0, "[A]"}}, {"[A]"}},
      {"a block",
       {{0, "[A]"}, {1, "X=1"}, {2, "[B]"}, {2, "Y=2"}, {0, "[C]"}},
       {"[A]", " X=1", "  {", "  [B]", "  Y=2", "  }", "[C]"}},
      {"two sections of a level get an empty block between them",
       {{2, "[P]"}, {2, "[Q]"}},
       {"[P]", "   {", "   }", "  [Q]", "  }"}},
      {"also behind other rows",
       {{0, "[A]"}, {1, "X=1"}, {2, "[P]"}, {2, "[Q]"}},
       {"[A]", " X=1", "  {", "  [P]", "   {", "   }", "  [Q]", "  }"}},
      {"three sections in a row",
       {{1, "[P]"}, {1, "[Q]"}, {1, "[R]"}},
       {"[P]", "  {", "  }", " [Q]", "  {", "  }", " [R]"}},
      {"not on level 0", {{0, "[A]"}, {0, "[B]"}, {0, "[C]"}}, {"[A]", "[B]", "[C]"}},
      {"not behind a property", {{1, "[P]"}, {1, "X=1"}, {1, "[Q]"}}, {"[P]", " X=1", " [Q]"}},
      {"not behind a block",
       {{1, "[P]"}, {2, "X=1"}, {1, "[Q]"}},
       {"[P]", "  {", "  X=1", "  }", " [Q]"}},
      {"the same header twice", {{1, "[P]"}, {1, "[p]"}}, {"[P]", "  {", "  }", " [p]"}},
      {"a section that ends its level gets its empty block before the way up",
       {{0, "[A]"}, {1, "X=1"}, {2, "[P]"}, {1, "[Q]"}},
       {"[A]", " X=1", "  {", "  [P]", "   {", "   }", "  }", " [Q]"}},
      {"up to level 1 only the braces of deeper levels are closed",
       {{0, "[A]"}, {1, "[P]"}, {0, "[B]"}},
       {"[A]", " [P]", "[B]"}},
      {"up to a property there is no empty block",
       {{1, "X=1"}, {2, "[P]"}, {1, "Y=2"}},
       {"X=1", "  {", "  [P]", "  }", " Y=2"}},
      {"two levels down are one block start, two levels up two block ends",
       {{1, "X=1"}, {3, "Y=2"}, {1, "Z=3"}},
       {"X=1", "   {", "   Y=2", "   }", "  }", " Z=3"}},
      {"from level 0 down to 2", {{0, "[A]"}, {2, "Y=2"}}, {"[A]", "  {", "  Y=2", "  }"}},
      {"from level 0 to 1 and back no brace is due",
       {{0, "[A]"}, {1, "X=1"}, {0, "[B]"}, {1, "Y=2"}},
       {"[A]", " X=1", "[B]", " Y=2"}},
      {"from level 2 to 0",
       {{0, "[A]"}, {1, "X=1"}, {2, "Y=2"}, {0, "[B]"}},
       {"[A]", " X=1", "  {", "  Y=2", "  }", "[B]"}},
      {"open levels are closed at the end",
       {{0, "[A]"}, {1, "X=1"}, {2, "[B]"}, {3, "Y=2"}},
       {"[A]", " X=1", "  {", "  [B]", "   {", "   Y=2", "   }", "  }"}},
      {"the first row is not indented", {{3, "Y=2"}}, {"Y=2", "   }", "  }"}},
      {"tabs stand for four blanks",
       {{1, "a"}, {4, "b"}, {5, "c"}, {8, "d"}, {9, "e"}},
       {"a", "\t{", "\tb", "\t {", "\t c", "\t\t{", "\t\td", "\t\t {", "\t\t e", "\t\t }", "\t\t}",
        "\t   }", "\t  }", "\t }", "\t}", "   }", "  }"}},
  };
  for (const auto& row : cases) EXPECT_EQ(Written(row.rows), row.lines) << row.name;
}

TEST_F(ReportFileWriteTest, LevelsAreIndentedByTabsAndBlanks) {
  const char* indentations[] = {"",    " ",    "  ",    "   ",  "\t",
                                "\t ", "\t  ", "\t   ", "\t\t", "\t\t "};
  for (int level = 0; level <= 9; ++level) {
    const GivenRows rows = {{level, "a=1"}, {level, "b=2"}};
    EXPECT_EQ(Written(rows)[1], indentations[level] + std::string("b=2"));
  }
}

TEST_F(ReportFileWriteTest, ADescribedSectionGetsNoEmptyBlock) {
  // The header is the end of the line, but the line does not begin with it.
  EXPECT_THAT(Written({{1, "N(::::::::);[P]"}, {1, "N(::::::::);[Q]"}}),
              ElementsAre("N(::::::::);[P]", " N(::::::::);[Q]"));
}

TEST_F(ReportFileWriteTest, WithoutRowsThereIsNoFirstLine) {
  BXReportFile store(context_);
  EXPECT_EQ(store.GetFirstLine(), "");
  EXPECT_EQ(FailureNumber([&] { store.GetNextLine(); }), kObjectNotSet);
  const GivenRows none;
  EXPECT_THAT(Written(none), IsEmpty());
}

TEST_F(ReportFileWriteTest, ANextLineWithoutAFirstIsError91) {
  BXReportFile store(context_);
  EXPECT_EQ(FailureNumber([&] { store.GetNextLine(); }), kObjectNotSet);
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(91, "BXReportFile Prozedur: GetNextLine")));
}

TEST_F(ReportFileWriteTest, ASecondFirstLineStartsAgainWithTheSameRows) {
  const GivenRows rows = {{1, "[P]"}, {1, "[Q]"}, {2, "X=1"}};
  const Lines lines = Written(rows);
  GivenLevel::calls = 0;
  BXReportFile store(context_);
  for (int taken = 0; taken < 5; ++taken) {
    store.GetFirstLine();
    for (int n = 0; n < taken; ++n) store.GetNextLine();
    EXPECT_EQ(AllLines(store), lines) << taken;
  }
  EXPECT_EQ(GivenLevel::calls, 1);
}

TEST_F(ReportFileWriteTest, TheEndIsReachedAgainAndAgain) {
  const GivenRows rows = {{3, "X=1"}};
  GivenLevel::rows = &rows;
  BXReportFile store(context_);
  EXPECT_EQ(store.GetFirstLine(), "X=1");
  EXPECT_EQ(store.GetNextLine(), "   }");
  EXPECT_EQ(store.GetNextLine(), "  }");
  for (int n = 0; n < 3; ++n) EXPECT_EQ(store.GetNextLine(), "");
}

TEST_F(ReportFileWriteTest, AFailureOfTheFirstLineIsReported) {
  GivenLevel::failure = kOutOfMemory;
  BXReportFile store(context_);
  EXPECT_EQ(FailureNumber([&] { store.GetFirstLine(); }), kOutOfMemory);
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(7, "BXReportFile Prozedur: GetFirstLine")));
  GivenLevel::failure = 0;
  const GivenRows rows = {{0, "[A]"}};
  GivenLevel::rows = &rows;
  EXPECT_EQ(store.GetFirstLine(), "[A]");
  EXPECT_THAT(Entries(errors_), IsEmpty());
}

TEST(ReportFileBlocksTest, SectionsAreNoPartOfThem) {
  const TestEngine engine;
  const auto tree = ReadLines(engine.context, {"[A]", "X=1", "Y=1", "{", "[P]", "[Q]", "}"});
  EXPECT_THAT(WriteBlocks(engine.context, tree),
              ElementsAre("[A]", " X=1", " Y=1", "  {", "  [P]", "   {", "   }", "  [Q]", "  }"));
}

TEST(ReportFileWriteFailureTest, TheLevelsDescribeTheirFailuresFirst) {
  FailingEngine engine;
  BXReportFile store(engine.context);
  for (const char* line : {"[A]", "X=1", "Y=2"}) store.AddLine(line);
  // Turns: row [A], the variables of level 1 (two rows), row X, row Y.
  engine.loop.FailAt(5, kInvalidCall);
  EXPECT_EQ(FailureNumber([&] { store.GetFirstLine(); }), kInvalidCall);
  EXPECT_THAT(Entries(engine.errors),
              ElementsAre(EntryText(5, "BXLevel1 Prozedur: BXLevelBasis_PrepareWriting"),
                          EntryText(5, "BXLevel0 Prozedur: BXLevelBasis_PrepareWriting",
                                    "Fehler beim Vorbereiten des Schreibvorganges."),
                          EntryText(5, "BXReportFile Prozedur: GetFirstLine",
                                    "Fehler beim Ermitteln der ersten Zeile.")));
}

TEST(ReportFileWriteFailureTest, RowsBeforeAFailureStay) {
  FailingEngine engine;
  BXReportFile store(engine.context);
  for (const char* line : {"[A]", "X=1", "Y=2"}) store.AddLine(line);
  engine.loop.FailAt(5, kInvalidCall);
  EXPECT_EQ(FailureNumber([&] { store.GetFirstLine(); }), kInvalidCall);
  EXPECT_THAT(AllLines(store), ElementsAre("[A]", " X=1"));
}

}  // namespace
}  // namespace tessary
