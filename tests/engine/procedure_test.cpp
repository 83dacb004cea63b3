#include "engine/procedure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "engine/level.h"
#include "engine/number_of.h"
#include "engine/write_table.h"
#include "support/engine_fixture.h"
#include "support/failure_number.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProcedureTest : public testing::Test {
 protected:
  Procedure Named(std::string_view name, std::string_view message = {},
                  Procedure::Message when = Procedure::Message::kAfterDescription) {
    return {errors_, "BXTest", name, message, when};
  }
  // Runs a body that adds nothing and fails.
  std::int32_t Fail(const Procedure& procedure, std::int32_t number) {
    return FailureNumber([&] { procedure.Run([&] { throw Failure(number); }); });
  }

  SharedErrors errors_;
};

TEST_F(ProcedureTest, ASourceTextIsClassAndProcedure) {
  EXPECT_EQ(SourceText("BXLevel3", "BXLevelBasis_Add"), "BXLevel3 Prozedur: BXLevelBasis_Add");
}

TEST_F(ProcedureTest, TheCollectionIsClearedOnEntryAndTheResultHandedOn) {
  Fail(Named("First"), kOverflow);
  EXPECT_EQ(Named("Second").Run([&] {
    EXPECT_THAT(Entries(errors_), IsEmpty());
    return 7;
  }),
            7);
  EXPECT_THAT(Entries(errors_), IsEmpty());
}

TEST_F(ProcedureTest, TheFirstFailureIsDescribedByItsOwnText) {
  EXPECT_EQ(Fail(Named("Run", "Eigene Meldung."), kTypeMismatch), kTypeMismatch);
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(13, "BXTest Prozedur: Run")));
  EXPECT_EQ(Fail(Named("Run"), kTypeMismatch), kTypeMismatch);
  EXPECT_THAT(Entries(errors_), ElementsAre("4 13 BXTest Prozedur: Run: Typen unverträglich"));
}

TEST_F(ProcedureTest, EnclosingProceduresAddTheirOwnMessageIfTheyHaveOne) {
  const auto nested = [&] {
    Named("Outer", "Außen.").Run([&] {
      Named("Silent").Run(
          [&] { Named("Inner", "Innen.").Run([] { throw Failure(kObjectNotSet); }); });
    });
  };
  EXPECT_EQ(FailureNumber(nested), kObjectNotSet);
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(91, "BXTest Prozedur: Inner"),
                                            EntryText(91, "BXTest Prozedur: Outer", "Außen.")));
}

TEST_F(ProcedureTest, AProcedureMayAlwaysAddItsOwnMessage) {
  Fail(Named("Run", "Immer.", Procedure::Message::kAlways), kInvalidCall);
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(5, "BXTest Prozedur: Run", "Immer.")));
}

TEST_F(ProcedureTest, AnEntryThatTheBodyAddedComesFirst) {
  EXPECT_EQ(FailureNumber([&] {
              Named("Run", "Eigene Meldung.").Run([&] {
                errors_.objErrors->Add({ErrorEntry::kFailure, 1, "q", "m"});
                throw Failure(kOverflow);
              });
            }),
            kOverflow);
  EXPECT_THAT(Entries(errors_),
              ElementsAre("4 1 q: m", EntryText(6, "BXTest Prozedur: Run", "Eigene Meldung.")));
}

TEST_F(ProcedureTest, AnEntryThatTheBodyAddedStaysAfterSuccess) {
  Named("Run").Run([&] { errors_.objErrors->Add({ErrorEntry::kFailure, 1, "q", "m"}); });
  EXPECT_THAT(Entries(errors_), ElementsAre("4 1 q: m"));
}

TEST_F(ProcedureTest, MissingMemoryIsFailure7) {
  EXPECT_EQ(FailureNumber([&] { Named("Run").Run([] { throw std::bad_alloc(); }); }), kOutOfMemory);
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(7, "BXTest Prozedur: Run")));
}

TEST_F(ProcedureTest, ReportsGoToTheCollectionThatIsInPlaceThen) {
  const Ref<ErrorCollection> before = errors_.objErrors;
  EXPECT_EQ(FailureNumber([&] {
              Named("Run").Run([&] {
                errors_.objErrors = MakeRef<ErrorCollection>();
                throw Failure(kOverflow);
              });
            }),
            kOverflow);
  EXPECT_TRUE(before->empty());
  EXPECT_THAT(Entries(errors_), ElementsAre(EntryText(6, "BXTest Prozedur: Run")));
}

TEST(ErrorCollectionTest, OneCollectionIsAppendedToAnother) {
  SharedErrors first;
  SharedErrors second;
  first.objErrors->Add({ErrorEntry::kFailure, 5, "a", "b"});
  second.objErrors->Add({ErrorEntry::kNotRestored, 6, "c", "d"});
  first.objErrors->AppendFrom(*second.objErrors);
  EXPECT_THAT(Entries(first), ElementsAre("4 5 a: b", "1 6 c: d"));
  EXPECT_THAT(Entries(second), ElementsAre("1 6 c: d"));
  first.objErrors->AppendFrom(*first.objErrors);
  EXPECT_THAT(Entries(first), ElementsAre("4 5 a: b", "1 6 c: d", "4 5 a: b", "1 6 c: d"));
}

TEST(ErrorCollectionTest, TheComponentsNumbersAreAsCallersKnowThem) {
  const struct {
    std::int32_t number;
    std::uint32_t code;
  } rows[] = {{kFolderEmpty, 0x80041388u},
              {kDoesNotExist, 0x80041389u},
              {kWrongKindOfFile, 0x8004138Au},
              {kNoBackupFolder, 0x8004138Bu},
              {kMissingElementsUnchecked, 0x80040000u + 4000u}};
  for (const auto& row : rows) EXPECT_EQ(static_cast<std::uint32_t>(row.number), row.code);
}

TEST(NumberOfTest, WholeNumbersRoundToEvenAndFailWithTheirNumbers) {
  const struct {
    const char* text;
    std::int32_t number;
    std::int32_t failure;
  } rows[] = {
      {"1", 1, 0},
      {" 42 ", 42, 0},
      {"-3", -3, 0},
      {"2,5", 2, 0},
      {"3.5", 4, 0},
      {"1e2", 100, 0},
      {"2147483647", INT32_MAX, 0},
      {"-2147483648", INT32_MIN, 0},
      {"2147483648", 0, kOverflow},
      {"1e99", 0, kOverflow},
      {"", 0, kTypeMismatch},
      {"abc", 0, kTypeMismatch},
      {"1x", 0, kTypeMismatch},
      {"[Line]", 0, kTypeMismatch},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    std::int32_t number = 0;
    EXPECT_EQ(FailureNumber([&] { number = NumberOf(row.text); }), row.failure);
    EXPECT_EQ(number, row.number);
  }
}

TEST(LevelClassNumberTest, OnlyTheNineReceivingClassesHaveANumber) {
  EXPECT_EQ(LevelClassNumber("Tessary.BXLevel1"), 1);
  EXPECT_EQ(LevelClassNumber("Tessary.BXLevel9"), 9);
  EXPECT_EQ(LevelClassNumber("TESSARY.bxlevel4"), 4);
  for (const char* name :
       {"", "Tessary.BXLevel0", "Tessary.BXLevel", "Tessary.BXLevel10", "Tessary.BXLevelx",
        "BXLevel1", "Tessary.BXReport1", "Tessary.BXLevel:"}) {
    EXPECT_EQ(FailureNumber([&] { LevelClassNumber(name); }), kCannotCreateObject) << name;
  }
}

TEST(WriteTableTest, RowsCountFromOneAndKeepTheirTexts) {
  WriteTable table;
  EXPECT_EQ(table.rows(), 0);
  table.Append(0, "[A]");
  table.Append(7).append("X").append("=1");
  table.Append(1, "");
  EXPECT_EQ(table.rows(), 3);
  EXPECT_EQ(table.Text(1), "[A]");
  EXPECT_EQ(table.Text(2), "X=1");
  EXPECT_EQ(table.Text(3), "");
  EXPECT_EQ(table.Level(1), 0);
  EXPECT_EQ(table.Level(2), 7);
  for (const std::int32_t row : {-1, 0, 4}) {
    EXPECT_EQ(FailureNumber([&] { table.Text(row); }), kSubscriptOutOfRange);
    EXPECT_EQ(FailureNumber([&] { table.Level(row); }), kSubscriptOutOfRange);
  }
}

TEST(WriteTableTest, PropertiesOfALevelMakeABlock) {
  for (const bool takes_blocks : {false, true}) {
    WriteTable table(takes_blocks);
    table.Append(0, "[A]");
    table.AppendProperty(5).append("X=1");
    table.AppendProperty(5).append("Y=1");
    table.AppendProperty(6).append("Z=1");
    table.Append(6, "[B]");
    table.AppendProperty(6).append("U=1");
    table.EndBlock();
    table.AppendProperty(6).append("V=1");
    std::vector<std::string> rows;
    for (std::int32_t row = 1; row <= table.rows(); ++row) rows.emplace_back(table.Text(row));
    if (takes_blocks) {
      EXPECT_THAT(rows, ElementsAre("[A]", "X=1\r\n\t Y=1", "Z=1", "[B]", "U=1", "V=1"));
    } else {
      EXPECT_THAT(rows, ElementsAre("[A]", "X=1", "Y=1", "Z=1", "[B]", "U=1", "V=1"));
    }
  }
}

// Rows are kept in pieces; where one ends must not show.
TEST(WriteTableTest, ManyRowsAndLongRowsKeepTheirTexts) {
  WriteTable table;
  std::vector<std::string> texts;
  for (int n = 0; n < 3000; ++n) {
    texts.push_back(std::string(static_cast<std::size_t>(n % 100), 'x') + std::to_string(n));
    if (n % 1000 >= 998) texts.back().append(200'000, 'y');
    table.Append(1, texts.back());
  }
  ASSERT_EQ(table.rows(), 3000);
  for (std::int32_t row = 1; row <= 3000; ++row) {
    ASSERT_EQ(table.Text(row), texts[static_cast<std::size_t>(row) - 1]) << row;
  }
  for (const std::int32_t kept : {2999, 1500, 1000, 999, 1}) {
    const std::string& last_kept = texts[static_cast<std::size_t>(kept) - 1];
    table.Truncate(kept);
    ASSERT_EQ(table.rows(), kept);
    ASSERT_EQ(table.Text(kept), last_kept);
    table.Append(1, "next");
    ASSERT_EQ(table.Text(kept + 1), "next");
    ASSERT_EQ(table.Text(kept), last_kept);
  }
  table.Truncate(0);
  EXPECT_EQ(table.rows(), 0);
  table.Append(1, "next");
  EXPECT_EQ(table.Text(1), "next");
}

}  // namespace
}  // namespace tessary
