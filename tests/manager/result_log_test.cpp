#include "manager/result_log.h"

#include <gmock/gmock.h>

#include "support/manager_test_base.h"

namespace tessary {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

void AddEntry(ResultLog& log, std::string message) {
  log.errors.objErrors->Add({ErrorEntry::kFailure, 5, "source", std::move(message)});
}

TEST(ResultLogTest, TrimsTheTextAndKeepsOneEmptyMessageForASuccess) {
  ResultLog log;
  AddEntry(log, "is not taken over");
  log.AddToResultLog("  Der Bericht  A.lst ", false);
  EXPECT_THAT(ItemsOf(log.dictCorrect), ElementsAre(Pair("Der Bericht  A.lst", ElementsAre(""))));
  EXPECT_THAT(log.dictErrors.items(), IsEmpty());
}

TEST(ResultLogTest, OnlyBlanksAreTrimmed) {
  ResultLog log;
  log.AddToResultLog(" \tA\t ", false);
  log.AddToResultLog("\u00A0B", false);
  log.AddToResultLog("   ", true);
  EXPECT_THAT(TextsOf(log.dictCorrect), ElementsAre("\tA\t", "\u00A0B"));
  EXPECT_THAT(TextsOf(log.dictErrors), ElementsAre(""));
}

TEST(ResultLogTest, TheEntryCollectedFirstStandsLast) {
  ResultLog log;
  for (const char* message : {"first", "second", "third"}) AddEntry(log, message);
  log.AddToResultLog("Bericht", true);
  EXPECT_THAT(ItemsOf(log.dictErrors),
              ElementsAre(Pair("Bericht", ElementsAre("third", "second", "first"))));
  EXPECT_EQ(log.errors.objErrors->entries().size(), 3u) << "logging does not empty the collection";
}

TEST(ResultLogTest, AFailureWithoutEntriesHasOneEmptyMessage) {
  ResultLog log;
  log.AddToResultLog("Bericht", true);
  EXPECT_THAT(ItemsOf(log.dictErrors), ElementsAre(Pair("Bericht", ElementsAre(""))));
}

TEST(ResultLogTest, TheFirstTextWinsWithoutRegardToCase) {
  ResultLog log;
  AddEntry(log, "first");
  log.AddToResultLog("Übersicht.lst", true);
  AddEntry(log, "second");
  log.AddToResultLog(" ÜBERSICHT.LST ", true);
  log.AddToResultLog("Ubersicht.lst", true);
  EXPECT_THAT(ItemsOf(log.dictErrors),
              ElementsAre(Pair("Übersicht.lst", ElementsAre("first")),
                          Pair("Ubersicht.lst", ElementsAre("second", "first"))));
}

TEST(ResultLogTest, SuccessesAndFailuresAreKeptApart) {
  ResultLog log;
  log.AddToResultLog("Bericht", true);
  log.AddToResultLog("Bericht", false);
  EXPECT_EQ(log.dictErrors.Count(), 1);
  EXPECT_EQ(log.dictCorrect.Count(), 1);
}

TEST(ResultLogTest, TextsThatAreNoUtf8AreComparedByTheirBytes) {
  ResultLog log;
  log.AddToResultLog("\xFF.lst", false);
  log.AddToResultLog("\xFE.lst", false);
  log.AddToResultLog("\xFF.LST", false);
  EXPECT_THAT(TextsOf(log.dictCorrect), ElementsAre("\xFF.lst", "\xFE.lst"));
}

class ManagerLogTest : public ManagerTest {};

TEST_F(ManagerLogTest, SuccessesAreCountedAcrossInstancesOfOneLog) {
  EXPECT_EQ(manager_.CountCorrectReports(), 0);
  log_.AddToResultLog("Bericht A", false);
  log_.AddToResultLog("BERICHT a", false);
  EXPECT_EQ(manager_.CountCorrectReports(), 1);
  BXConvertLLMgr second(log_, {files_, user_});
  log_.AddToResultLog("Bericht B", false);
  EXPECT_EQ(manager_.CountCorrectReports(), 2);
  EXPECT_EQ(second.CountCorrectReports(), 2);

  ResultLog other_thread;
  EXPECT_EQ(BXConvertLLMgr(other_thread, {files_, user_}).CountCorrectReports(), 0);
}

TEST_F(ManagerLogTest, TheProtocolShowsNothingWhileOnlySuccessesAreLogged) {
  manager_.ShowErrorProtocol();
  log_.AddToResultLog("gut", false);
  manager_.ShowErrorProtocol();
  EXPECT_EQ(user_.Count("protocol"), 0u);
  EXPECT_EQ(user_.Count("pointer 0"), 2u);
  ExpectTidy();
}

TEST_F(ManagerLogTest, TheProtocolShowsFailuresAndSuccessesWithTheDefaultPointer) {
  log_.AddToResultLog("gut", false);
  log_.AddToResultLog("schlecht", true);
  manager_.ShowErrorProtocol();
  EXPECT_THAT(user_.events(), ElementsAre("pointer 0", "protocol", "pointer restored"));
  ASSERT_EQ(user_.protocols().size(), 1u);
  EXPECT_EQ(user_.protocols()[0].errors.at(0).text, "schlecht");
  EXPECT_EQ(user_.protocols()[0].correct.at(0).text, "gut");
}

}  // namespace
}  // namespace tessary
